// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "desktop/NodeScope.h"

#include <QCoreApplication>
#include <QDBusArgument>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusMetaType>
#include <QDBusPendingCallWatcher>
#include <QFile>
#include <QLoggingCategory>

#include <algorithm>
#include <chrono>
#include <csignal>

namespace tidewick {

namespace {

Q_LOGGING_CATEGORY(lcUnits, "tidewick.units", QtWarningMsg)

/// As in the unit files: Tidewick itself kills a node that has not ended after 90 s.
constexpr std::chrono::microseconds timeToStop = std::chrono::seconds(105);

struct UnitProperty
{
    QString name;
    QDBusVariant value;
};

/// A unit to be created for the scope's sake. The call takes a list of them, which stays empty.
struct AuxiliaryUnit
{
    QString name;
    QList<UnitProperty> properties;
};

QDBusArgument &operator<<(QDBusArgument &argument, const UnitProperty &property)
{
    argument.beginStructure();
    argument << property.name << property.value;
    argument.endStructure();
    return argument;
}

const QDBusArgument &operator>>(const QDBusArgument &argument, UnitProperty &property)
{
    argument.beginStructure();
    argument >> property.name >> property.value;
    argument.endStructure();
    return argument;
}

QDBusArgument &operator<<(QDBusArgument &argument, const AuxiliaryUnit &unit)
{
    argument.beginStructure();
    argument << unit.name << unit.properties;
    argument.endStructure();
    return argument;
}

const QDBusArgument &operator>>(const QDBusArgument &argument, AuxiliaryUnit &unit)
{
    argument.beginStructure();
    argument >> unit.name >> unit.properties;
    argument.endStructure();
    return argument;
}

void registerTypes()
{
    qDBusRegisterMetaType<UnitProperty>();
    qDBusRegisterMetaType<QList<UnitProperty>>();
    qDBusRegisterMetaType<AuxiliaryUnit>();
    qDBusRegisterMetaType<QList<AuxiliaryUnit>>();
    qDBusRegisterMetaType<QList<uint>>();
}

template <typename T>
UnitProperty property(const char *name, const T &value)
{
    return {QString::fromLatin1(name), QDBusVariant(QVariant::fromValue(value))};
}

QDBusMessage requestFor(pid_t node, std::optional<pid_t> supervisor)
{
    QList<uint> processes{uint(node)};
    if (supervisor)
        processes += uint(*supervisor);
    QDBusMessage request = QDBusMessage::createMethodCall(
        QStringLiteral("org.freedesktop.systemd1"), QStringLiteral("/org/freedesktop/systemd1"),
        QStringLiteral("org.freedesktop.systemd1.Manager"), QStringLiteral("StartTransientUnit"));
    const QList<UnitProperty> properties{
        property("Description", QStringLiteral("The node of Tidewick")),
        property("PIDs", processes),
        // Without effect: Tidewick tells the node to stop.
        property("KillSignal", int(SIGCONT)),
        property("TimeoutStopUSec", quint64(timeToStop.count())),
        property("CollectMode", QStringLiteral("inactive-or-failed")),
    };
    request << QStringLiteral("tidewick-node-%1.scope").arg(node) << QStringLiteral("fail")
            << QVariant::fromValue(properties) << QVariant::fromValue(QList<AuxiliaryUnit>());
    request.setAutoStartService(false);
    return request;
}

} // namespace

bool NodeScope::isOwnService(const QByteArray &controlGroups)
{
    const QList<QByteArray> lines = controlGroups.split('\n');
    return std::any_of(lines.begin(), lines.end(), [](const QByteArray &line) {
        const QByteArray unit = line.mid(line.lastIndexOf('/') + 1);
        return unit.endsWith(".service")
               && (unit == "tidewick.service" || unit.startsWith("app-org.tidewick.Tidewick"));
    });
}

void NodeScope::moveThere(pid_t node, std::optional<pid_t> supervisor)
{
    QFile groups(QStringLiteral("/proc/self/cgroup"));
    const QDBusConnection bus = QDBusConnection::sessionBus();
    if (!bus.isConnected() || !groups.open(QFile::ReadOnly) || isOwnService(groups.readAll()))
        return;
    registerTypes();
    auto *call = new QDBusPendingCallWatcher(bus.asyncCall(requestFor(node, supervisor)), qApp);
    QObject::connect(call, &QDBusPendingCallWatcher::finished, call, [call] {
        call->deleteLater();
        const QDBusError error = call->error();
        const bool hasManager =
            error.name() != QLatin1String("org.freedesktop.DBus.Error.NameHasNoOwner");
        if (error.isValid() && hasManager)
            qCWarning(lcUnits, "the node has no scope of its own: %s",
                      qUtf8Printable(error.message()));
    });
}

} // namespace tidewick
