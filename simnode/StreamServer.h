// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include "simnode/DebugLog.h"
#include "simnode/LedgerMessages.h"
#include "simnode/NodeConfiguration.h"
#include "simnode/StreamFault.h"

#include <QTcpServer>
#include <QWebSocketServer>

#include <functional>
#include <map>

class QWebSocket;

namespace tidewick::sim {

class StreamMisbehaviour;

/// The WebSocket port: answers commands and sends ledgers and transactions to subscribers, or
/// misbehaves. Destroying it closes the port and all connections.
class StreamServer final : public QObject
{
    Q_OBJECT

public:
    /// The server's access to the node.
    struct Source
    {
        const LedgerMessages &ledgers;
        std::function<std::optional<LedgerRange>()> validated;
        /// Carries out a command, except those for subscriptions.
        std::function<Reply(const QString &command, const QJsonObject &request)> command;
    };

    /// The log must outlive the server.
    StreamServer(Source source, StreamFaults faults, DebugLog &log, QObject *parent = nullptr);
    ~StreamServer() override;

    /// Opens the port. Returns false and sets errorString() on failure.
    bool open(const PortConfiguration &port);
    QString errorString() const { return m_listener.errorString(); }

    /// Sends a validated ledger to the subscribers.
    void publish(quint32 index);

private:
    struct Subscription
    {
        bool ledger = false;
        bool transactions = false;
        ApiForm form = ApiForm::Classic;
    };

    void acceptConnection();
    void accept();
    void spoilLater(StreamMisbehaviour &misbehaviour) const;
    void receive(QWebSocket *client, const QString &text);
    Reply run(const QJsonObject &request, Subscription &subscription) const;
    Reply subscribe(const QJsonObject &request, Subscription &subscription) const;
    QStringList transactionTexts(const Ledger &ledger, ApiForm form) const;
    void send(QWebSocket *client, const QString &text);

    Source m_source;
    StreamFaults m_faults;
    DebugLog &m_log;
    /// Performs the handshake on the listener's connections.
    QWebSocketServer m_server;
    qsizetype m_connections = 0;
    /// Keyed by the client's port.
    std::map<quint16, StreamMisbehaviour *> m_misbehaviours;
    std::map<QWebSocket *, Subscription> m_clients;
    /// Declared last so that it is destroyed first, with its connections, which the members above
    /// refer to.
    QTcpServer m_listener;
};

} // namespace tidewick::sim
