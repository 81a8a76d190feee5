// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "desktop/SystemService.h"

#include "desktop/BusProbe.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDBusVariant>

namespace tidewick {

namespace {

using namespace std::chrono_literals;

constexpr std::chrono::milliseconds patience = 5s;

/// The system bus. Not connected if there is none or it is silent: connecting to a silent bus would
/// take forever.
QDBusConnection systemBus()
{
    QByteArray address = qgetenv("DBUS_SYSTEM_BUS_ADDRESS");
    if (address.isEmpty())
        address = "unix:path=/run/dbus/system_bus_socket";
    static const bool isUsable = BusProbe::answers(address, 1s);
    return isUsable ? QDBusConnection::systemBus() : QDBusConnection(QString());
}

/// The object path of a unit: each byte of its name that is neither an ASCII letter nor a digit
/// becomes "_" and two hexadecimal digits.
QString objectPath(const QString &unit)
{
    QString path = QStringLiteral("/org/freedesktop/systemd1/unit/");
    for (const char byte : unit.toUtf8()) {
        const bool plain = (byte >= 'a' && byte <= 'z') || (byte >= 'A' && byte <= 'Z')
                           || (byte >= '0' && byte <= '9');
        path += plain ? QString(QLatin1Char(byte))
                      : QStringLiteral("_%1").arg(uchar(byte), 2, 16, QLatin1Char('0'));
    }
    return path;
}

} // namespace

SystemService::SystemService(QString unit, QObject *parent)
    : QObject(parent), m_unit(std::move(unit))
{
}

void SystemService::look()
{
    if (m_isLooking)
        return;
    const QDBusConnection bus = systemBus();
    if (!bus.isConnected())
        return;
    m_isLooking = true;
    QDBusMessage question = QDBusMessage::createMethodCall(
        QStringLiteral("org.freedesktop.systemd1"), objectPath(m_unit),
        QStringLiteral("org.freedesktop.DBus.Properties"), QStringLiteral("Get"));
    question << QStringLiteral("org.freedesktop.systemd1.Unit") << QStringLiteral("ActiveState");
    question.setAutoStartService(false);
    auto *call = new QDBusPendingCallWatcher(bus.asyncCall(question, int(patience.count())), this);
    connect(call, &QDBusPendingCallWatcher::finished, this, [this, call] {
        call->deleteLater();
        const QDBusPendingReply<QDBusVariant> answer = *call;
        m_isLooking = false;
        m_isActive =
            answer.isValid() && answer.value().variant().toString() == QLatin1String("active");
    });
}

} // namespace tidewick
