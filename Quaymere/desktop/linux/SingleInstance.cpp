// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "desktop/SingleInstance.h"

#include "platform/files/Folders.h"

#include <QDBusAbstractAdaptor>
#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QFile>
#include <QLockFile>
#include <QVariantMap>

#include <utility>

namespace tidewick {

namespace {

constexpr const char *objectPath = "/org/tidewick/Tidewick";
const QString activationToken = QStringLiteral("activation-token");
const QString startupId = QStringLiteral("desktop-startup-id");
constexpr const char *interfaceName = "org.freedesktop.Application";
/// If the main thread of the first instance does not answer within this time, waiting longer does
/// not help the user.
constexpr int answerLimitMs = 3000;

/// What a launcher has passed to this process, so that a window of the first instance may take the
/// focus.
QVariantMap platformData(const QByteArray &launch)
{
    QVariantMap data;
    const QString token = qEnvironmentVariable("XDG_ACTIVATION_TOKEN");
    if (!token.isEmpty())
        data.insert(activationToken, token);
    if (!launch.isEmpty())
        data.insert(startupId, QString::fromUtf8(launch));
    return data;
}

/// Puts the token into the environment, where Qt looks for it when the next window requests the
/// focus. Launchers with GLib before 2.76 pass the token as the identifier of the launch.
void takeActivationToken(const QVariantMap &platformData)
{
    const QString id = platformData.value(startupId).toString();
    const QString token = platformData.value(activationToken, id).toString();
    if (!token.isEmpty())
        qputenv("XDG_ACTIVATION_TOKEN", token.toUtf8());
}

std::filesystem::path lockFile()
{
    return Folders::lockFile("tidewick");
}

} // namespace

/// The D-Bus interface of a desktop application that has a single instance.
class ApplicationAdaptor final : public QDBusAbstractAdaptor
{
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.Application")

public:
    explicit ApplicationAdaptor(SingleInstance *instance)
        : QDBusAbstractAdaptor(instance), m_instance(instance)
    {
    }

public slots:
    void Activate(const QVariantMap &platformData) { m_instance->activate(platformData); }

    /// The application opens no files, so this activates it instead.
    void Open(const QStringList &, const QVariantMap &platformData)
    {
        m_instance->activate(platformData);
    }

    void ActivateAction(const QString &action, const QVariantList &,
                        const QVariantMap &platformData)
    {
        m_instance->activateAction(action, platformData);
    }

private:
    SingleInstance *m_instance;
};

SingleInstance::SingleInstance(QByteArray launch)
    : m_launch(std::move(launch)),
      m_isStartedByBus(qEnvironmentVariableIsSet("DBUS_STARTER_BUS_TYPE"))
{
    new ApplicationAdaptor(this);
}

SingleInstance::~SingleInstance() = default;

SingleInstance::Claim SingleInstance::claim()
{
    bool ownsName = false;
    QDBusConnectionInterface *bus =
        hasSessionBus() ? QDBusConnection::sessionBus().interface() : nullptr;
    if (bus) {
        // Registered before the name, so that no call is answered with "no such object".
        QDBusConnection::sessionBus().registerObject(QLatin1String(objectPath), this);
        const auto attempt = [bus] { return bus->registerService(QLatin1String(name)); };
        QDBusReply<QDBusConnectionInterface::RegisterServiceReply> reply = attempt();
        if (reply.isValid() && reply.value() == QDBusConnectionInterface::ServiceNotRegistered) {
            if (const auto claim = tellFirst())
                return *claim;
            reply = attempt(); // the first instance has ended in the meantime
        }
        ownsName = reply.isValid() && reply.value() == QDBusConnectionInterface::ServiceRegistered;
    }
    // Owning the name is enough if there is nowhere to create the lock file.
    return takeLock(ownsName) ? Claim::First : Claim::Refused;
}

/// Without an address, the D-Bus library would start a bus of its own, which no other program uses.
bool SingleInstance::hasSessionBus()
{
    if (qEnvironmentVariableIsSet("DBUS_SESSION_BUS_ADDRESS"))
        return true;
    const QByteArray runtime = qgetenv("XDG_RUNTIME_DIR");
    return !runtime.isEmpty() && QFile::exists(QFile::decodeName(runtime + "/bus"));
}

bool SingleInstance::takeLock(bool isOptional)
{
    m_lock = std::make_unique<QLockFile>(QFile::decodeName(lockFile().c_str()));
    m_lock->setStaleLockTime(0); // stale only if its owner has ended, however old it is
    if (m_lock->tryLock())
        return true;
    if (m_lock->error() != QLockFile::LockFailedError) {
        m_reason = QStringLiteral(
                       "Cannot determine whether Tidewick is already running: %1 cannot be locked.")
                       .arg(QFile::decodeName(lockFile().c_str()));
        return isOptional;
    }
    qint64 owner = 0;
    QString host;
    QString application;
    m_lock->getLockInfo(&owner, &host, &application);
    m_reason = QStringLiteral(
                   "Tidewick is already running, as process %1, and cannot be reached from here.")
                   .arg(owner);
    return false;
}

/// Returns nothing if the first instance has ended.
std::optional<SingleInstance::Claim> SingleInstance::tellFirst()
{
    QDBusMessage call =
        QDBusMessage::createMethodCall(QLatin1String(name), QLatin1String(objectPath),
                                       QLatin1String(interfaceName), QStringLiteral("Activate"));
    call.setArguments({platformData(m_launch)});
    call.setAutoStartService(false);
    const QDBusMessage answer =
        QDBusConnection::sessionBus().call(call, QDBus::Block, answerLimitMs);
    if (answer.type() == QDBusMessage::ReplyMessage)
        return Claim::ToldFirst;
    if (QDBusError(answer).type() == QDBusError::ServiceUnknown)
        return std::nullopt;
    m_reason = QStringLiteral("Tidewick is already running, but did not come to the front: %1")
                   .arg(answer.errorMessage());
    return Claim::Refused;
}

void SingleInstance::activate(const QVariantMap &platformData)
{
    if (isRefused())
        return;
    takeActivationToken(platformData);
    if (std::exchange(m_isStartedByBus, false))
        emit launched();
    else
        emit activated();
    emit served(platformData.value(startupId).toString().toUtf8());
}

void SingleInstance::activateAction(const QString &action, const QVariantMap &platformData)
{
    if (action != QLatin1String("quit") && isRefused())
        return;
    takeActivationToken(platformData);
    m_isStartedByBus = false;
    emit actionActivated(action);
    emit served(platformData.value(startupId).toString().toUtf8());
}

bool SingleInstance::isRefused() const
{
    if (!m_refusal.isEmpty())
        sendErrorReply(QDBusError::NotSupported, m_refusal);
    return !m_refusal.isEmpty();
}

} // namespace tidewick

#include "SingleInstance.moc"
