// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include "ui/menu/MenuRows.h"

#include <QWidget>

#include <array>

namespace tidewick {

class Announcer;
class PanelButton;
class PanelIcon;
class PanelLabel;
class PanelLine;

/// The content of the node panel: the icon, a column of the menu's rows, and the hint. Each
/// position in the menu has its own widgets. They are created when first needed, and change in
/// place and only when their row does. Main thread only.
///
/// The focus is on a command or, until the keyboard is used, on this widget, so that a panel that
/// opens by itself takes no keystroke meant for another window as a command. A focused command
/// keeps its position even while it is disabled: the next Enter must not go to its neighbour.
class PanelRows final : public QWidget
{
    Q_OBJECT

public:
    explicit PanelRows(QWidget *parent = nullptr);

    void setRows(const QList<MenuRow> &rows);
    void setIcon(const QIcon &icon);
    void setHint(const QString &hint);

    int heightForWidth(int width) const override;

    /// Resizes to this width and to the height that the rows need for it.
    void fit(int width);

signals:
    void commandChosen(tidewick::MenuCommand command);
    /// The height for the same width may have changed.
    void heightChanged();
    /// The keyboard moved the focus to a command.
    void focusMoved(QWidget *button);

protected:
    bool focusNextPrevChild(bool next) override;
    void keyPressEvent(QKeyEvent *event) override;
    void focusOutEvent(QFocusEvent *event) override;
    void changeEvent(QEvent *event) override;

private:
    /// A position in the menu and the widgets created for it. One of them is shown while there is a
    /// row.
    struct Slot
    {
        std::optional<MenuRow> row;
        PanelLabel *label = nullptr;
        PanelButton *button = nullptr;
        PanelLine *line = nullptr;
        /// The command at the time of the mouse press: the user meant this one, even if another has
        /// replaced it.
        MenuCommand pressed = MenuCommand::None;
        /// The command whose name screen readers know.
        MenuCommand namedCommand = MenuCommand::None;

        QWidget *shown() const;
    };
    using Place = std::optional<int>;
    using Rows = std::array<std::optional<MenuRow>, menuPlaceCount>;

    Slot &slot(MenuPlace place) { return m_slots[size_t(place)]; }
    const Slot &slot(MenuPlace place) const { return m_slots[size_t(place)]; }

    QString news(const Rows &wanted) const;
    void setRow(int place, const std::optional<MenuRow> &row);
    PanelLabel *makeLabel(MenuPlace place);
    PanelButton *makeButton(Slot &slot);

    Place focusedPlace() const;
    Place focusedCommand() const;
    bool canFocus(int place) const;
    void hold(Place place);
    void restoreFocus(Place place);
    bool focus(int from, int step);

    void setFonts();
    int arrange(int width, bool place) const;
    int arrangeHeader(int width, bool place) const;

    std::array<Slot, menuPlaceCount> m_slots;
    PanelIcon *m_icon;
    PanelLine *m_hintLine;
    PanelLabel *m_hint;
    QString m_hintText;
    qint64 m_iconKey = 0;
    Announcer *m_announcer;
    /// The disabled command that holds the focus.
    Place m_held;
};

} // namespace tidewick
