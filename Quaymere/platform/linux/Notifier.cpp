// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "platform/Notifier.h"

#include "platform/DisplayText.h"

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

QDBusMessage methodCall(const QString &destination, const QString &method)
{
    return QDBusMessage::createMethodCall(
        destination, QStringLiteral("/org/freedesktop/Notifications"), serviceName, method);
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

void Notifier::notify(const QString &summary, const QString &body)
{
    m_waiting = Notification{shown(summary), shown(body)};
    proceed();
}

/// One call at a time, so that each notification knows which one it replaces.
void Notifier::proceed()
{
    if (m_calling || !m_waiting)
        return;
    if (!m_connection.isConnected()) {
        // Qt never ends a call on a bus that has not been there from the start.
        qCDebug(lcNotifier, "No notification: no bus");
        m_waiting.reset();
    } else if (m_service) {
        send();
    } else {
        ask();
    }
}

void Notifier::ask()
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
    m_service = Service{answer.service(), capabilities.contains(QLatin1String("body-markup"))};
    proceed();
}

void Notifier::send()
{
    m_sent = *std::exchange(m_waiting, std::nullopt);
    const QString name = QStringLiteral("org.tidewick.Tidewick");
    constexpr int asLongAsUsual = -1;
    QDBusMessage message = methodCall(m_service->owner, QStringLiteral("Notify"));
    message << QStringLiteral("Tidewick") << m_service->lastId << name << m_sent.summary
            << (m_service->readsMarkup ? escaped(m_sent.body) : m_sent.body) << QStringList()
            << QVariantMap{{QStringLiteral("desktop-entry"), name}} << asLongAsUsual;
    call(message, &Notifier::takeId);
}

void Notifier::takeId(const QDBusMessage &answer)
{
    if (!isError(answer)) {
        m_service->lastId = answer.arguments().value(0).toUInt();
    } else {
        // A service that had shown something and is gone now may have a successor.
        const bool isGone = QDBusError(answer).type() == QDBusError::ServiceUnknown;
        if (isGone && m_service->lastId != 0 && !m_waiting)
            m_waiting = m_sent;
        m_service.reset();
    }
    proceed();
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
