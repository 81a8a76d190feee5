// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "ui/tray/TrayItem.h"

#include "platform/text/DisplayText.h"
#include "ui/controls/ToolTip.h"

#include <QCursor>
#include <QGuiApplication>

namespace tidewick {

TrayItem::TrayItem(RowMenu::Drawing drawing, const QIcon &icon, const QList<MenuRow> &rows,
                   const QStringList &toolTip)
    : m_drawing(drawing), m_menu(drawing), m_icon(icon)
{
    connect(&m_menu, &RowMenu::commandChosen, this, &TrayItem::commandChosen);
    connect(&m_popup, &RowMenu::commandChosen, this, &TrayItem::commandChosen);
    connect(&m_icon, &QSystemTrayIcon::activated, this, &TrayItem::activate);
    setRows(rows);
    setToolTip(toolTip);
    // A host reads the menu as soon as the item appears.
    m_icon.setContextMenu(&m_menu);
    m_icon.show();
}

void TrayItem::setRows(const QList<MenuRow> &rows)
{
    m_menu.setRows(rows);
    m_popup.setRows(rows);
}

void TrayItem::setIcon(const QIcon &icon)
{
    if (m_icon.icon().cacheKey() != icon.cacheKey())
        m_icon.setIcon(icon);
}

void TrayItem::setToolTip(const QStringList &lines)
{
    if (lines == m_toolTip)
        return;
    m_toolTip = lines;
    constexpr qsizetype mostCharacters = 500;
    const QString shown =
        m_drawing == RowMenu::Drawing::ByUs
            ? ToolTip::titled(lines.constFirst(), lines.sliced(1).join(u'\n'))
            : DisplayText::elided(DisplayText::singleLine(lines.join(QStringLiteral(" · "))),
                                  mostCharacters);
    m_icon.setToolTip(shown);
}

void TrayItem::setScheme(Scheme scheme)
{
    m_menu.setScheme(scheme);
    m_popup.setScheme(scheme);
}

/// Opens the menu on the primary button, because hosts open it only on the secondary one. On
/// Wayland this is not possible: there a menu needs one of our windows as its parent.
void TrayItem::activate(QSystemTrayIcon::ActivationReason reason)
{
    if (reason != QSystemTrayIcon::Trigger)
        return;
    if (QGuiApplication::platformName().startsWith(QLatin1String("wayland")))
        emit panelWanted();
    else
        m_popup.popup(QCursor::pos());
}

} // namespace tidewick
