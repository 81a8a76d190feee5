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
/// The service is asked once who it is and what it can do, and notifications go to that very
/// program; when it is gone, its successor is asked. So no name on the bus needs to be watched.
///
/// A notification may offer one thing to do, as a button where the service has such.
///
/// Main thread only.
class Notifier final : public QObject
{
    Q_OBJECT

public:
    static constexpr std::chrono::milliseconds defaultPatience{10'000};

    explicit Notifier(const QDBusConnection &connection, QObject *parent = nullptr,
                      std::chrono::milliseconds patience = defaultPatience);

    /// Plain texts of any length and content; shown is the beginning of each, on one line. The
    /// action's label, if it has one, may be shown on a button.
    void notify(const QString &summary, const QString &body, const QString &action = {});

signals:
    /// The action of the notification shown last was chosen.
    void actionChosen();

private slots:
    void takeAction(uint id, const QString &key);

private:
    struct Notification
    {
        QString summary;
        QString body;
        QString action;
    };
    struct Service
    {
        bool readsMarkup = false;
        bool hasActions = false;
        /// Its unique name on the bus; empty until it is known.
        QString owner = {};
        /// Of the notification to be replaced; 0 while there is none.
        quint32 lastId = 0;
    };

    void proceed();
    void askWhat();
    void askWho();
    void send();
    void forgetService();
    void call(const QDBusMessage &message, void (Notifier::*answered)(const QDBusMessage &answer));
    void takeCapabilities(const QDBusMessage &answer);
    void takeOwner(const QDBusMessage &answer);
    void takeId(const QDBusMessage &answer);

    QDBusConnection m_connection;
    std::chrono::milliseconds m_patience;
    bool m_calling = false;
    std::optional<Service> m_service;
    std::optional<Notification> m_waiting;
    Notification m_sent;
};

} // namespace tidewick
