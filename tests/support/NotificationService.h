// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QDBusConnection>
#include <QDBusContext>
#include <QDBusMessage>
#include <QObject>
#include <QVariantMap>

namespace tidewick {

/// A stand-in for the desktop's notification service that can also fail in various ways.
class NotificationService : public QObject, protected QDBusContext
{
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.Notifications")

public:
    enum class Mood { Answers, Errs, Silent };

    explicit NotificationService(const QDBusConnection &bus) : connection(bus)
    {
        connection.registerObject(QStringLiteral("/org/freedesktop/Notifications"), this,
                                  QDBusConnection::ExportAllSlots);
        if (!connection.registerService(QStringLiteral("org.freedesktop.Notifications")))
            qFatal("A notification service is already on the bus");
    }
    ~NotificationService() override { QDBusConnection::disconnectFromBus(connection.name()); }

    /// Signals that the user chose an action of a notification.
    void choose(quint32 id, const QString &key) const
    {
        QDBusMessage signal = QDBusMessage::createSignal(
            QStringLiteral("/org/freedesktop/Notifications"),
            QStringLiteral("org.freedesktop.Notifications"), QStringLiteral("ActionInvoked"));
        signal << id << key;
        connection.send(signal);
    }

    QStringList capabilities{QStringLiteral("body")};
    Mood capabilitiesMood = Mood::Answers;
    Mood notifyMood = Mood::Answers;
    quint32 nextId = 41;
    int asked = 0;
    QList<QVariantList> calls;
    QDBusConnection connection;

public slots:
    QStringList GetCapabilities()
    {
        ++asked;
        showMood(capabilitiesMood);
        return capabilities;
    }

    // The names and the types are those of the D-Bus interface.
    uint Notify(const QString &, uint, const QString &, const QString &, const QString &,
                const QStringList &, const QVariantMap &, int)
    {
        calls.append(message().arguments());
        showMood(notifyMood);
        return nextId++;
    }

private:
    void showMood(Mood mood)
    {
        if (mood == Mood::Errs)
            sendErrorReply(QDBusError::Failed, QStringLiteral("not today"));
        else if (mood == Mood::Silent)
            setDelayedReply(true);
    }
};

} // namespace tidewick
