// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QDBusConnection>
#include <QObject>
#include <QString>

#include <chrono>
#include <optional>

class QDBusMessage;

namespace tidewick {

/// Shows a text as a desktop notification. The desktop shows one of this run at a time: a later one
/// takes the place of the one before it, also while that one still waits for the desktop.
///
/// Never waits and never fails: where there is no notification service, no bus, or no answer within
/// the patience, nothing is shown and the debug log has a line.
///
/// The service is asked once what it can do, and notifications go to the very program that
/// answered; when that one is gone, its successor is asked. So no other name on the bus needs to be
/// watched.
///
/// Main thread only.
class Notifier final : public QObject
{
    Q_OBJECT

public:
    static constexpr std::chrono::milliseconds defaultPatience{10'000};

    explicit Notifier(const QDBusConnection &connection, QObject *parent = nullptr,
                      std::chrono::milliseconds patience = defaultPatience);

    /// Plain texts of any length and content; shown is the beginning of each, on one line.
    void notify(const QString &summary, const QString &body);

private:
    struct Notification
    {
        QString summary;
        QString body;
    };
    struct Service
    {
        /// Its unique name on the bus.
        QString owner;
        bool readsMarkup;
        /// Of the notification to be replaced; 0 while there is none.
        quint32 lastId = 0;
    };

    void proceed();
    void ask();
    void send();
    void call(const QDBusMessage &message, void (Notifier::*answered)(const QDBusMessage &answer));
    void takeCapabilities(const QDBusMessage &answer);
    void takeId(const QDBusMessage &answer);

    QDBusConnection m_connection;
    std::chrono::milliseconds m_patience;
    bool m_calling = false;
    std::optional<Service> m_service;
    std::optional<Notification> m_waiting;
    Notification m_sent;
};

} // namespace tidewick
