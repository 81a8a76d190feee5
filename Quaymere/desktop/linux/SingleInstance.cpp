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
constexpr const char *interfaceName = "org.freedesktop.Application";
/// A first instance whose main thread does not answer for so long is of no use to who waits.
constexpr int answerLimitMs = 3000;

/// What a launcher gave this process so that a window of the first one may take the focus.
QVariantMap platformData()
{
    const QString token = qEnvironmentVariable("XDG_ACTIVATION_TOKEN");
    return token.isEmpty() ? QVariantMap() : QVariantMap{{activationToken, token}};
}

/// Qt takes the token for the next window that asks for the focus from the environment.
void takeActivationToken(const QVariantMap &platformData)
{
    const QString token = platformData.value(activationToken).toString();
    if (!token.isEmpty())
        qputenv("XDG_ACTIVATION_TOKEN", token.toUtf8());
}

std::filesystem::path lockFile()
{
    return Folders::lockFile("tidewick");
}

} // namespace

/// The interface of a desktop application that is there once, for the bus.
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

    /// There is nothing to open; coming forward is the next best.
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

SingleInstance::SingleInstance()
    : m_isStartedByBus(qEnvironmentVariableIsSet("DBUS_STARTER_ADDRESS"))
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
        // Before the name is owned, so that no call is answered with "no such object".
        QDBusConnection::sessionBus().registerObject(QLatin1String(objectPath), this);
        const auto attempt = [bus] { return bus->registerService(QLatin1String(name)); };
        QDBusReply<QDBusConnectionInterface::RegisterServiceReply> reply = attempt();
        if (reply.isValid() && reply.value() == QDBusConnectionInterface::ServiceNotRegistered) {
            if (const auto claim = tellFirst())
                return *claim;
            reply = attempt(); // the first one has gone meanwhile
        }
        ownsName = reply.isValid() && reply.value() == QDBusConnectionInterface::ServiceRegistered;
    }
    // The name is enough where the lock cannot be had for want of a place for it.
    return takeLock(ownsName) ? Claim::First : Claim::Refused;
}

/// Where none is told of, the bus library would start one of its own, which nobody else is on.
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
    m_lock->setStaleLockTime(0); // only when its owner is gone, however old
    if (m_lock->tryLock())
        return true;
    if (m_lock->error() != QLockFile::LockFailedError) {
        m_reason = QStringLiteral("Cannot tell whether Tidewick is running already: %1 cannot be "
                                  "locked.")
                       .arg(QFile::decodeName(lockFile().c_str()));
        return isOptional;
    }
    qint64 owner = 0;
    QString host;
    QString application;
    m_lock->getLockInfo(&owner, &host, &application);
    m_reason = QStringLiteral("Tidewick is running already, as process %1, and cannot be reached "
                              "from here.")
                   .arg(owner);
    return false;
}

/// Nothing when there is no first one any more.
std::optional<SingleInstance::Claim> SingleInstance::tellFirst()
{
    QDBusMessage call =
        QDBusMessage::createMethodCall(QLatin1String(name), QLatin1String(objectPath),
                                       QLatin1String(interfaceName), QStringLiteral("Activate"));
    call.setArguments({platformData()});
    call.setAutoStartService(false);
    const QDBusMessage answer =
        QDBusConnection::sessionBus().call(call, QDBus::Block, answerLimitMs);
    if (answer.type() == QDBusMessage::ReplyMessage)
        return Claim::ToldFirst;
    if (QDBusError(answer).type() == QDBusError::ServiceUnknown)
        return std::nullopt;
    m_reason = QStringLiteral("Tidewick is running already, but did not come forward: %1")
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
}

void SingleInstance::activateAction(const QString &action, const QVariantMap &platformData)
{
    if (action != QLatin1String("quit") && isRefused())
        return;
    takeActivationToken(platformData);
    m_isStartedByBus = false;
    emit actionActivated(action);
}

bool SingleInstance::isRefused() const
{
    if (!m_refusal.isEmpty())
        sendErrorReply(QDBusError::NotSupported, m_refusal);
    return !m_refusal.isEmpty();
}

} // namespace tidewick

#include "SingleInstance.moc"
