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

/// One entry of a menu on the bus, as a host would draw it.
struct MenuEntry
{
    int id = 0;
    QString text;
    bool separator = false;
    bool enabled = true;

    bool operator==(const MenuEntry &) const = default;
};

/// Looks at a tray item as a tray host does: over the bus. It asks without blocking, so that the
/// item may belong to this process.
class TrayReader final : public QObject
{
    Q_OBJECT

public:
    explicit TrayReader(const QDBusConnection &bus);

    /// Whether an item is registered with the tray host.
    bool findItem();

    /// A property of the item, such as "Title".
    QVariant property(const char *name);

    QString toolTip();

    /// The icon in the sizes that the item offers.
    QList<QImage> icon();

    /// What of the menu is to be seen.
    QList<MenuEntry> menu();

    /// As the user does. False when there is no such entry.
    bool click(const QString &text);

    /// How often hosts were told to read the menu anew.
    int layoutUpdates() const { return m_layoutUpdates; }

    /// How often they were told what is new about its entries.
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

/// The rows as a host should draw them; `id` is left at 0.
QList<MenuEntry> entriesOf(const QList<MenuRow> &rows);

/// Without what a host gives them to tell them apart.
QList<MenuEntry> withoutIds(QList<MenuEntry> entries);

} // namespace tidewick
