// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include "ui/menu/MenuRows.h"

#include <QWidget>

#include <array>

namespace tidewick {

class PanelButton;
class PanelIcon;
class PanelLabel;
class PanelLine;

/// What the node panel shows: the icon, the menu's rows one below the other, and the hint. Each
/// place of the menu has its own widgets, made when it first needs them, which change in place and
/// only when their row does. Main thread only.
///
/// The focus is on a command or, until the keyboard is used, on this widget, so that a panel which
/// opens by itself takes no keystroke meant for another window as a command. A command that has it
/// keeps its place while it is disabled, too: the next Enter must not fall to its neighbour.
class PanelRows final : public QWidget
{
    Q_OBJECT

public:
    explicit PanelRows(QWidget *parent = nullptr);

    void setRows(const QList<MenuRow> &rows);
    void setIcon(const QIcon &icon);
    void setHint(const QString &hint);

    int heightForWidth(int width) const override;

    /// Takes that width, and the height that the rows take in it.
    void fit(int width);

signals:
    void commandChosen(tidewick::MenuCommand command);
    /// The height for the same width may be another.
    void heightChanged();
    /// A command got the focus from the keyboard.
    void focusMoved(QWidget *button);

protected:
    bool focusNextPrevChild(bool next) override;
    void keyPressEvent(QKeyEvent *event) override;
    void focusOutEvent(QFocusEvent *event) override;
    void changeEvent(QEvent *event) override;

private:
    /// A place of the menu and the widgets made for it, of which one is shown while it has a row.
    struct Slot
    {
        std::optional<MenuRow> row;
        PanelLabel *label = nullptr;
        PanelButton *button = nullptr;
        PanelLine *line = nullptr;
        /// What is meant is what was there when the mouse was pressed, not what came since.
        MenuCommand pressed = MenuCommand::None;

        QWidget *shown() const;
    };
    using Place = std::optional<int>;

    Slot &slot(MenuPlace place) { return m_slots[size_t(place)]; }
    const Slot &slot(MenuPlace place) const { return m_slots[size_t(place)]; }

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
    /// The disabled command that the focus waits at.
    Place m_held;
};

} // namespace tidewick
