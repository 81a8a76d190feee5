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

/// Shows a text as a desktop notification. The desktop shows only one notification of this run at a
/// time: a new one replaces the previous one, even while that is still waiting to be sent.
///
/// Never blocks and never fails: if there is no notification service, no bus, or no answer within
/// the patience, nothing is shown and the debug log gets a line.
///
/// Asks the service once for its identity and capabilities, and sends notifications to that very
/// process. Once that process has gone, asks its successor. Therefore no bus name needs to be
/// watched.
///
/// A notification may offer one action, shown as a button if the service supports that.
///
/// Main thread only.
class Notifier final : public QObject
{
    Q_OBJECT

public:
    static constexpr std::chrono::milliseconds defaultPatience{10'000};

    explicit Notifier(const QDBusConnection &connection, QObject *parent = nullptr,
                      std::chrono::milliseconds patience = defaultPatience);

    /// The summary and body are plain texts of any length and content; the beginning of each is
    /// shown on one line. `action` is the label of the action, if there is one; it may appear on a
    /// button.
    void notify(const QString &summary, const QString &body, const QString &action = {});

signals:
    /// The user has chosen the action of the notification shown last.
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
        /// The ID of the notification to replace; 0 if there is none.
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
