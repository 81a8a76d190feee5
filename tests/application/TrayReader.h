// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include "ui/menu/MenuRows.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QImage>
#include <QObject>
#include <QVariantMap>

namespace tidewick {

/// A menu entry read from the bus, as a tray host would draw it.
struct MenuEntry
{
    int id = 0;
    QString text;
    bool separator = false;
    bool enabled = true;

    bool operator==(const MenuEntry &) const = default;
};

/// Reads a tray item over the bus, as a tray host does. Its requests do not block the event loop,
/// so the item may belong to this process.
class TrayReader final : public QObject
{
    Q_OBJECT

public:
    explicit TrayReader(const QDBusConnection &bus);

    /// Whether an item is registered with the tray host.
    bool findItem();

    /// The value of a property of the item, such as "Title".
    QVariant property(const char *name);

    QString toolTip();

    /// The icon in all sizes that the item provides.
    QList<QImage> icon();

    /// The visible entries of the menu.
    QList<MenuEntry> menu();

    /// Clicks an entry, as the user would. Returns false if there is no such entry.
    bool click(const QString &text);

    /// Clicks the icon with the primary button.
    bool activate();

    /// How often tray hosts were told to read the menu again.
    int layoutUpdates() const { return m_layoutUpdates; }

    /// How often tray hosts were notified of changed properties of the menu's entries.
    int propertyUpdates() const { return m_propertyUpdates; }

private slots:
    void countLayoutUpdate() { ++m_layoutUpdates; }
    void countPropertyUpdate() { ++m_propertyUpdates; }

private:
    QDBusMessage ask(const QString &service, const QString &path, const QString &interface,
                     const QString &method, const QVariantList &arguments);

    QDBusConnection m_bus;
    QString m_service;
    int m_layoutUpdates = 0;
    int m_propertyUpdates = 0;
};

/// The entries as a tray host should draw these rows; `id` is left at 0.
QList<MenuEntry> entriesOf(const QList<MenuRow> &rows);

/// The entries without their ids.
QList<MenuEntry> withoutIds(QList<MenuEntry> entries);

} // namespace tidewick
