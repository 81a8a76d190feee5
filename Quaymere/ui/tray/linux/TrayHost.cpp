// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "ui/tray/TrayHost.h"

#include "desktop/BusSignal.h"
#include "ui/tray/linux/XEmbedTray.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDBusServiceWatcher>
#include <QDBusVariant>

namespace tidewick {

namespace {

constexpr QLatin1String watcher("org.kde.StatusNotifierWatcher");
constexpr QLatin1String watcherPath("/StatusNotifierWatcher");

} // namespace

/// Asks the StatusNotifier watcher whether it has a host, whenever a watcher appears or sends a
/// signal.
class TrayHost::Private final : public QObject
{
    Q_OBJECT

public:
    explicit Private(TrayHost *host)
        : m_host(host), m_bus(QDBusConnection::sessionBus()),
          m_services(watcher, m_bus, QDBusServiceWatcher::WatchForOwnerChange),
          m_xembed([host] { emit host->changed(); })
    {
        connect(&m_services, &QDBusServiceWatcher::serviceOwnerChanged, this, &Private::ask);
        for (const char *signal :
             {"StatusNotifierHostRegistered", "StatusNotifierHostUnregistered"})
            BusSignal{watcher, watcherPath, watcher, QLatin1String(signal)}.connect(m_bus, this,
                                                                                    SLOT(ask()));
        // A bus that goes down takes its hosts with it, without signals about them.
        const BusSignal disconnected{{},
                                     QStringLiteral("/org/freedesktop/DBus/Local"),
                                     QStringLiteral("org.freedesktop.DBus.Local"),
                                     QStringLiteral("Disconnected")};
        disconnected.connect(m_bus, this, SLOT(forget()));
        ask();
    }

    bool has(Kind kind) const
    {
        return kind == Kind::StatusNotifier ? m_hasNotifierHost : m_xembed.exists();
    }

    Kind kind() const
    {
        if (m_hasNotifierHost)
            return Kind::StatusNotifier;
        return m_xembed.exists() ? Kind::XEmbed : Kind::None;
    }

private slots:
    void ask()
    {
        QDBusMessage call = QDBusMessage::createMethodCall(
            watcher, watcherPath, QStringLiteral("org.freedesktop.DBus.Properties"),
            QStringLiteral("Get"));
        call.setArguments({QString(watcher), QStringLiteral("IsStatusNotifierHostRegistered")});
        call.setAutoStartService(false);
        m_latest = new QDBusPendingCallWatcher(m_bus.asyncCall(call), this);
        connect(m_latest, &QDBusPendingCallWatcher::finished, this, &Private::take);
    }

    void take(QDBusPendingCallWatcher *call)
    {
        call->deleteLater();
        // Answers from an earlier watcher do not count.
        if (call != m_latest)
            return;
        const QDBusPendingReply<QDBusVariant> answer = *call;
        set(!answer.isError() && answer.value().variant().toBool());
    }

    void forget() { set(false); }

private:
    void set(bool hasNotifierHost)
    {
        if (std::exchange(m_hasNotifierHost, hasNotifierHost) != hasNotifierHost)
            emit m_host->changed();
    }

    TrayHost *m_host;
    QDBusConnection m_bus;
    QDBusServiceWatcher m_services;
    XEmbedTray m_xembed;
    QDBusPendingCallWatcher *m_latest = nullptr;
    bool m_hasNotifierHost = false;
};

TrayHost::TrayHost(QObject *parent) : QObject(parent), m_private(std::make_unique<Private>(this)) {}

TrayHost::~TrayHost() = default;

TrayHost::Kind TrayHost::kind() const
{
    return m_private->kind();
}

bool TrayHost::has(Kind kind) const
{
    return m_private->has(kind);
}

} // namespace tidewick

#include "TrayHost.moc"
