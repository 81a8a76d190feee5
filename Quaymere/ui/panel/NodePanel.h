// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include "ui/controls/FittedWindow.h"
#include "ui/controls/Scheme.h"
#include "ui/menu/MenuRows.h"

class QIcon;

namespace tidewick {

class PanelRows;

/// The menu's rows as a small window, for desktops without a tray or where the tray item cannot
/// open a menu. Owned by the application; main thread only. Its width follows its font and its
/// height its rows, which scroll if the screen is too low for them.
///
/// If it is closed, it is minimised instead, because without a tray it is the application's only
/// face; Escape minimises it, too. Beside a tray item, both hide it.
class NodePanel final : public FittedWindow
{
    Q_OBJECT

public:
    explicit NodePanel(QWidget *parent = nullptr);

    /// Updates the rows that differ, in place. Equal rows cost only a comparison.
    void setRows(const QList<MenuRow> &rows);

    /// Sets the phase's icon. Only its shape counts: it is shown in the colour of the texts.
    void setIcon(const QIcon &icon);

    /// Sets a line that says what to install to get a tray; an empty text removes it.
    void setHint(const QString &hint);

    /// Sets the colours; light ones are the default.
    void setScheme(Scheme scheme);

    /// Sets whether the application has no other face, which is the default.
    void setOnlyFace(bool only) { m_isOnlyFace = only; }

signals:
    void commandChosen(tidewick::MenuCommand command);

protected:
    void closeEvent(QCloseEvent *event) override;
    int wantedWidth() const override;
    void fitContent(int width) override;

private:
    NodePanel(PanelRows *rows, QWidget *parent);

    void dismiss();

    PanelRows *m_rows;
    Scheme m_scheme;
    bool m_isOnlyFace = true;
};

} // namespace tidewick
