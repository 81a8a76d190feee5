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

/// Spoils one connection to the WebSocket port. Belongs to the connection's socket and writes to it
/// past the QWebSocket, which goes on reading.
class StreamMisbehaviour final : public QObject
{
    Q_OBJECT

public:
    /// The log outlives the socket.
    StreamMisbehaviour(StreamFault fault, const StreamFaults &faults, DebugLog &log,
                       QTcpSocket *socket);
    ~StreamMisbehaviour() override;

    bool replacesHandshake() const { return m_fault.replacesHandshake(); }

    /// Misbehaves from now on.
    void begin();

    /// Misbehaves once it is time to. The texts are what a flood is made of.
    void beginLater(std::function<QList<QByteArray>()> texts);

    /// From here on, what the node has to say is told here.
    bool hasBegun() const { return m_begun; }

    /// Tells a text in the spoiled way, or not at all.
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
