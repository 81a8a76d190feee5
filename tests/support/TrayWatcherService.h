// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QDBusConnection>
#include <QObject>
#include <QStringList>

namespace tidewick {

/// A tray on the bus that displays nothing. It is available at once, whereas a real panel takes
/// seconds to start. It answers while the event loop runs.
class TrayWatcherService : public QObject
{
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.kde.StatusNotifierWatcher")
    Q_PROPERTY(QStringList RegisteredStatusNotifierItems MEMBER m_items)
    Q_PROPERTY(bool IsStatusNotifierHostRegistered READ hasHost CONSTANT)
    Q_PROPERTY(int ProtocolVersion READ protocolVersion CONSTANT)

public:
    explicit TrayWatcherService(QDBusConnection bus)
    {
        bus.registerObject(QStringLiteral("/StatusNotifierWatcher"), this,
                           QDBusConnection::ExportAllProperties | QDBusConnection::ExportAllSlots);
        if (!bus.registerService(QStringLiteral("org.kde.StatusNotifierWatcher")))
            qFatal("A tray is already on the bus");
    }

    static bool hasHost() { return true; }
    static int protocolVersion() { return 0; }

public slots:
    // The name is that of the D-Bus interface.
    void RegisterStatusNotifierItem(const QString &service) { m_items.append(service); }

private:
    QStringList m_items;
};

} // namespace tidewick
