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

/// The WebSocket port: answers commands and tells subscribers of ledgers and transactions, or
/// misbehaves. Destroying it closes the port and all connections.
class StreamServer final : public QObject
{
    Q_OBJECT

public:
    /// What the node knows, for the server to ask.
    struct Source
    {
        const LedgerMessages &ledgers;
        std::function<std::optional<LedgerRange>()> validated;
        /// Carries out a command other than those on subscriptions.
        std::function<Reply(const QString &command, const QJsonObject &request)> command;
    };

    /// The log outlives the server.
    StreamServer(Source source, StreamFaults faults, DebugLog &log, QObject *parent = nullptr);
    ~StreamServer() override;

    /// Opens the port. False with errorString() set on failure.
    bool open(const PortConfiguration &port);
    QString errorString() const { return m_listener.errorString(); }

    /// Tells subscribers of a ledger that was validated.
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
    /// Shakes hands on the connections that the listener hands it.
    QWebSocketServer m_server;
    qsizetype m_connections = 0;
    /// By the client's port.
    std::map<quint16, StreamMisbehaviour *> m_misbehaviours;
    std::map<QWebSocket *, Subscription> m_clients;
    /// Goes first, with its connections, which are known above.
    QTcpServer m_listener;
};

} // namespace tidewick::sim
