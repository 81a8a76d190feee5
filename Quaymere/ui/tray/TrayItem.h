// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include "ui/controls/Scheme.h"
#include "ui/tray/RowMenu.h"

#include <QSystemTrayIcon>

namespace tidewick {

/// The application's face in the tray: an icon with the menu's rows. Create it only once a tray
/// host exists. Main thread only.
class TrayItem final : public QObject
{
    Q_OBJECT

public:
    /// Takes the lines of the tooltip. The first is its headline.
    TrayItem(RowMenu::Drawing drawing, const QIcon &icon, const QList<MenuRow> &rows,
             const QStringList &toolTip);

    RowMenu::Drawing drawing() const { return m_drawing; }

    void setRows(const QList<MenuRow> &rows);
    void setIcon(const QIcon &icon);
    void setToolTip(const QStringList &lines);

    /// Sets the colours of the menus that we draw; light ones are the default.
    void setScheme(Scheme scheme);

signals:
    void commandChosen(tidewick::MenuCommand command);

    /// The icon was clicked on a desktop where we cannot open a menu at it.
    void panelWanted();

private:
    void activate(QSystemTrayIcon::ActivationReason reason);

    RowMenu::Drawing m_drawing;
    /// The menu that a host reads, or that we open if no host does.
    RowMenu m_menu;
    /// The menu that we open ourselves, under the pointer.
    RowMenu m_popup{RowMenu::Drawing::ByUs};
    QSystemTrayIcon m_icon;
    QStringList m_toolTip;
};

} // namespace tidewick
