// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include "simnode/DebugLog.h"
#include "simnode/StreamFault.h"

#include <QByteArray>
#include <QElapsedTimer>
#include <QObject>
#include <QTimer>

#include <functional>

class QTcpSocket;

namespace tidewick::sim {

/// Disturbs one connection to the WebSocket port. It is owned by the connection's socket and writes
/// to it directly, bypassing the QWebSocket, which continues to read.
class StreamMisbehaviour final : public QObject
{
    Q_OBJECT

public:
    /// The log must outlive the socket.
    StreamMisbehaviour(StreamFault fault, const StreamFaults &faults, DebugLog &log,
                       QTcpSocket *socket);
    ~StreamMisbehaviour() override;

    bool replacesHandshake() const { return m_fault.replacesHandshake(); }

    /// Begins to misbehave.
    void begin();

    /// Begins to misbehave after the delay of the scenario. A flood consists of the texts.
    void beginLater(std::function<QList<QByteArray>()> texts);

    /// Whether it has begun to misbehave. From then on, the node's messages go through send().
    bool hasBegun() const { return m_begun; }

    /// Sends a text in the faulty way, or not at all.
    void send(const QByteArray &text);

private:
    void act();
    void answerHandshake();
    void pour(const QByteArray &bytes);
    void flood();
    void write(const QByteArray &bytes);

    StreamFault m_fault;
    StreamFaults m_faults;
    DebugLog &m_log;
    QTcpSocket *m_socket;
    std::function<QList<QByteArray>()> m_texts;
    bool m_begun = false;
    qint64 m_bytes = 0;
    QTimer m_beginner;
    QTimer m_ender;
    QTimer m_floodTimer;
    QElapsedTimer m_floodTime;
    qint64 m_floodMessages = 0;
};

} // namespace tidewick::sim
