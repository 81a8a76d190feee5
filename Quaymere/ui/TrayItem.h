// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include "ui/MenuRows.h"

#include <QMenu>
#include <QSystemTrayIcon>

#include <array>

namespace tidewick {

/// The tray's face of the application: an icon with the menu's rows. One fixed set of actions, of
/// which only what differs is changed, so that an open menu stays as it is under the pointer and
/// the bus carries no more than the news. Make it once a tray host is there. Main thread only.
class TrayItem final : public QObject
{
    Q_OBJECT

public:
    /// Who draws the menu, and therefore how its texts are escaped.
    enum class Drawing { ByHost, ByUs };

    TrayItem(Drawing drawing, const QIcon &icon, const QList<MenuRow> &rows,
             const QString &toolTip);

    Drawing drawing() const { return m_drawing; }

    void setRows(const QList<MenuRow> &rows);
    void setIcon(const QIcon &icon);
    void setToolTip(const QString &text);

signals:
    void commandChosen(MenuCommand command);

private:
    void addAction(MenuPlace place);
    void setRow(QAction &action, const MenuRow &row);
    QString escaped(const QString &text) const;
    QString plainToolTip(const QString &text) const;

    Drawing m_drawing;
    QMenu m_menu;
    QSystemTrayIcon m_icon;
    std::array<QAction *, menuPlaceCount> m_actions{};
    std::array<MenuCommand, menuPlaceCount> m_commands{};
};

} // namespace tidewick
