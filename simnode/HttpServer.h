// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include "platform/files/Files.h"
#include "simnode/DebugLog.h"
#include "simnode/NodeConfiguration.h"
#include "simnode/Reply.h"
#include "simnode/RpcFault.h"
#include "simnode/Transmission.h"

#include <QSet>
#include <QTcpServer>

#include <chrono>
#include <deque>
#include <functional>

namespace tidewick::sim {

/// The JSON-RPC port: answers POST requests, with the faults of the scenario. Destroying it closes
/// the port and all connections.
class HttpServer final : public QTcpServer
{
    Q_OBJECT

public:
    /// Carries out a method with these parameters and returns the reply.
    using Command = std::function<Reply(const QString &method, const QJsonObject &parameters)>;

    /// The log must outlive the server.
    HttpServer(Command command, RpcFaults faults, DebugLog &log, QObject *parent = nullptr);

    /// Opens the port. Returns false and sets errorString() on failure.
    bool open(const PortConfiguration &port);

    /// Activates the faults that wait for a cue.
    void cueFaults() { m_faults.onCue = false; }

protected:
    void incomingConnection(qintptr descriptor) override;

private:
    bool misbehaves() const;
    Transmission answer(const HttpRequest &request);
    Transmission answerCall(const QJsonObject &call);
    QByteArray recordedAnswer(const QString &method, const QByteArray &otherwise);

    Command m_command;
    RpcFaults m_faults;
    DebugLog &m_log;
    std::chrono::steady_clock::time_point m_openedAt;
    /// The methods that have been answered from a recording.
    QSet<QString> m_answeredAsRecorded;
    int m_connections = 0;
    /// Connections that were accepted and are never read.
    std::deque<UniqueDescriptor> m_unread;
};

} // namespace tidewick::sim
