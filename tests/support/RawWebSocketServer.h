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

/// A server on the node's stream port that shakes hands and then sends the bytes a test says, right
/// or wrong.
class RawWebSocketServer final : public QObject, public sim::WebSocketFrames
{
    Q_OBJECT

public:
    /// A frame of the client, unmasked. The first byte is its final bit and its opcode.
    struct Frame
    {
        quint8 firstByte;
        QByteArray payload;

        bool operator==(const Frame &) const = default;
    };

    /// Called with the connection in place of shaking hands, once its request is there whole.
    using Answer = std::function<void(QTcpSocket *connection)>;

    explicit RawWebSocketServer(Answer answer = {});

    /// Connections accepted so far.
    int connections() const { return m_connections; }

    /// The latest connection has shaken hands and is open.
    bool isOpen() const { return m_open && m_connection; }

    // Of the latest connection:

    QTcpSocket *connection() const { return m_connection; }
    const QByteArray &request() const { return m_request; }
    const QList<Frame> &frames() const { return m_frames; }
    /// What came behind the request and makes no whole frame.
    const QByteArray &unread() const { return m_unread; }

    void send(const QByteArray &bytes) const { m_connection->write(bytes); }
    void send(quint8 firstByte, const QByteArray &payload) const
    {
        send(frame(firstByte, payload));
    }

    /// From now on the client's bytes pile up on its side.
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
