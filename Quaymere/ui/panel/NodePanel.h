// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include "ui/controls/FittedWindow.h"
#include "ui/menu/MenuRows.h"

class QIcon;

namespace tidewick {

class PanelRows;

/// The menu's rows as a small window, for desktops without a tray. Owned by the application; main
/// thread only. It is as wide as its font asks for and as high as its rows, which scroll where the
/// screen is lower than that.
///
/// A user who closes it minimises it, since without a tray it is all there is of the application;
/// close() and QApplication::quit() do close it, hide() takes it away for a tray.
class NodePanel final : public FittedWindow
{
    Q_OBJECT

public:
    explicit NodePanel(QWidget *parent = nullptr);

    /// What differs from the rows before changes in place; equal rows cost a comparison.
    void setRows(const QList<MenuRow> &rows);

    /// The phase's icon. Its shape counts: it is shown in the colour of the texts.
    void setIcon(const QIcon &icon);

    /// One line on what to install to get a tray; empty: none.
    void setHint(const QString &hint);

    /// Dark or light, which it is at first.
    void setDark(bool dark);

signals:
    void commandChosen(tidewick::MenuCommand command);

protected:
    void closeEvent(QCloseEvent *event) override;
    int wantedWidth() const override;
    void fitContent(int width) override;

private:
    NodePanel(PanelRows *rows, QWidget *parent);

    PanelRows *m_rows;
    bool m_dark = false;
};

} // namespace tidewick
