// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include "simnode/WebSocketFrames.h"

#include <QByteArray>
#include <QList>
#include <QPointer>
#include <QTcpServer>
#include <QTcpSocket>

#include <functional>

namespace tidewick {

/// A server on the node's stream port that completes the handshake and then sends exactly the bytes
/// a test specifies, valid or not.
class RawWebSocketServer final : public QObject, public sim::WebSocketFrames
{
    Q_OBJECT

public:
    /// A frame from the client, after unmasking. The first byte holds the FIN bit and the opcode.
    struct Frame
    {
        quint8 firstByte;
        QByteArray payload;

        bool operator==(const Frame &) const = default;
    };

    /// Called with the connection when its request is complete, in place of the handshake.
    using Answer = std::function<void(QTcpSocket *connection)>;

    explicit RawWebSocketServer(Answer answer = {});

    /// Connections accepted so far.
    int connections() const { return m_connections; }

    /// Whether the latest connection has completed its handshake and is open.
    bool isOpen() const { return m_open && m_connection; }

    // The following refer to the latest connection.

    QTcpSocket *connection() const { return m_connection; }
    const QByteArray &request() const { return m_request; }
    const QList<Frame> &frames() const { return m_frames; }
    /// The bytes received after the request that do not yet form a complete frame.
    const QByteArray &unread() const { return m_unread; }

    void send(const QByteArray &bytes) const { m_connection->write(bytes); }
    void send(quint8 firstByte, const QByteArray &payload) const
    {
        send(frame(firstByte, payload));
    }

    /// Stops reading, so that the client's data piles up on its own side.
    void stopReading();

private:
    void accept();
    void read();
    bool takeFrame();
    void shakeHands();

    QTcpServer m_server;
    Answer m_answer;
    QPointer<QTcpSocket> m_connection;
    int m_connections = 0;
    bool m_open = false;
    bool m_reading = true;
    QByteArray m_request;
    QByteArray m_unread;
    QList<Frame> m_frames;
};

} // namespace tidewick
