// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "desktop/Notifier.h"

#include "desktop/BusSignal.h"
#include "platform/text/DisplayText.h"

#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QLoggingCategory>
#include <QVariantMap>

#include <utility>

namespace tidewick {

namespace {

Q_LOGGING_CATEGORY(lcNotifier, "tidewick.notifier", QtWarningMsg)

constexpr qsizetype longestText = 500;

const QString serviceName = QStringLiteral("org.freedesktop.Notifications");
const QString objectPath = QStringLiteral("/org/freedesktop/Notifications");
/// A key of our own, because "default" would stand for a click anywhere.
const QString actionKey = QStringLiteral("help");

QDBusMessage methodCall(const QString &destination, const QString &method)
{
    return QDBusMessage::createMethodCall(destination, objectPath, serviceName, method);
}

QString shown(const QString &text)
{
    return DisplayText::singleLine(DisplayText::elided(text, longestText));
}

QString escaped(QString text)
{
    return text.replace(u'&', QLatin1String("&amp;"))
        .replace(u'<', QLatin1String("&lt;"))
        .replace(u'>', QLatin1String("&gt;"));
}

bool isError(const QDBusMessage &answer)
{
    if (answer.type() != QDBusMessage::ErrorMessage)
        return false;
    qCDebug(lcNotifier, "No notification: %ls", qUtf16Printable(answer.errorMessage()));
    return true;
}

} // namespace

Notifier::Notifier(const QDBusConnection &connection, QObject *parent,
                   std::chrono::milliseconds patience)
    : QObject(parent), m_connection(connection), m_patience(patience)
{
}

void Notifier::notify(const QString &summary, const QString &body, const QString &action)
{
    m_waiting = Notification{shown(summary), shown(body), action};
    proceed();
}

/// Makes one call at a time, so that each notification knows which one it replaces.
void Notifier::proceed()
{
    if (m_calling || !m_waiting)
        return;
    if (!m_connection.isConnected()) {
        // Qt never finishes a call on a bus that was not connected from the start.
        qCDebug(lcNotifier, "No notification: no bus");
        m_waiting.reset();
    } else if (!m_service) {
        askWhat();
    } else if (m_service->owner.isEmpty()) {
        askWho();
    } else {
        send();
    }
}

/// This call comes first, because it starts a service that is not running yet.
void Notifier::askWhat()
{
    call(methodCall(serviceName, QStringLiteral("GetCapabilities")), &Notifier::takeCapabilities);
}

void Notifier::takeCapabilities(const QDBusMessage &answer)
{
    if (isError(answer)) {
        m_waiting.reset();
        return;
    }
    const QStringList capabilities = answer.arguments().value(0).toStringList();
    m_service = Service{capabilities.contains(QLatin1String("body-markup")),
                        capabilities.contains(QLatin1String("actions"))};
    proceed();
}

/// Asks the bus, because the sender of an answer is not available: Qt leaves it empty from 6.5 on.
void Notifier::askWho()
{
    const QString bus = QStringLiteral("org.freedesktop.DBus");
    QDBusMessage question = QDBusMessage::createMethodCall(
        bus, QStringLiteral("/org/freedesktop/DBus"), bus, QStringLiteral("GetNameOwner"));
    question << serviceName;
    call(question, &Notifier::takeOwner);
}

void Notifier::takeOwner(const QDBusMessage &answer)
{
    if (isError(answer)) {
        m_waiting.reset();
        m_service.reset();
        return;
    }
    m_service->owner = answer.arguments().value(0).toString();
    const BusSignal actionInvoked{m_service->owner, objectPath, serviceName,
                                  QStringLiteral("ActionInvoked")};
    actionInvoked.connect(m_connection, this, SLOT(takeAction(uint, QString)));
    proceed();
}

void Notifier::send()
{
    m_sent = *std::exchange(m_waiting, std::nullopt);
    const QString name = QStringLiteral("org.tidewick.Tidewick");
    constexpr int asLongAsUsual = -1;
    QStringList actions;
    if (m_service->hasActions && !m_sent.action.isEmpty())
        actions = {actionKey, m_sent.action};
    QDBusMessage message = methodCall(m_service->owner, QStringLiteral("Notify"));
    message << QStringLiteral("Tidewick") << m_service->lastId << name << m_sent.summary
            << (m_service->readsMarkup ? escaped(m_sent.body) : m_sent.body) << actions
            << QVariantMap{{QStringLiteral("desktop-entry"), name}} << asLongAsUsual;
    call(message, &Notifier::takeId);
}

void Notifier::takeId(const QDBusMessage &answer)
{
    if (!isError(answer)) {
        m_service->lastId = answer.arguments().value(0).toUInt();
    } else {
        // A service that had shown a notification and has gone may have a successor.
        const bool isGone = QDBusError(answer).type() == QDBusError::ServiceUnknown;
        if (isGone && m_service->lastId != 0 && !m_waiting)
            m_waiting = m_sent;
        forgetService();
    }
    proceed();
}

void Notifier::forgetService()
{
    m_connection.disconnect(m_service->owner, objectPath, serviceName,
                            QStringLiteral("ActionInvoked"), this, SLOT(takeAction(uint, QString)));
    m_service.reset();
}

void Notifier::takeAction(uint id, const QString &key)
{
    // The signal arrives for the notifications of all programs.
    if (m_service && m_service->lastId != 0 && id == m_service->lastId && key == actionKey)
        emit actionChosen();
}

void Notifier::call(const QDBusMessage &message,
                    void (Notifier::*answered)(const QDBusMessage &answer))
{
    m_calling = true;
    auto *call =
        new QDBusPendingCallWatcher(m_connection.asyncCall(message, int(m_patience.count())), this);
    connect(call, &QDBusPendingCallWatcher::finished, this, [this, call, answered] {
        call->deleteLater();
        m_calling = false;
        (this->*answered)(call->reply());
    });
}

} // namespace tidewick
