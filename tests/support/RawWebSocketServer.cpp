// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "support/RawWebSocketServer.h"

#include "platform/NodePorts.h"

#include <QCryptographicHash>
#include <QtEndian>

namespace tidewick {

namespace {

/// The value of a header in a request or response.
QByteArray header(const QByteArray &head, const QByteArray &name)
{
    const qsizetype at = head.toLower().indexOf("\r\n" + name.toLower() + ':');
    return at < 0 ? QByteArray() : head.mid(at + name.size() + 3).split('\r').first().trimmed();
}

} // namespace

RawWebSocketServer::RawWebSocketServer(Answer answer) : m_answer(std::move(answer))
{
    if (!m_server.listen(QHostAddress::LocalHost, NodePorts::webSocket))
        qFatal("The test server cannot listen: %s", qPrintable(m_server.errorString()));
    connect(&m_server, &QTcpServer::newConnection, this, &RawWebSocketServer::accept);
}

void RawWebSocketServer::stopReading()
{
    m_reading = false;
    m_connection->setReadBufferSize(1);
}

void RawWebSocketServer::accept()
{
    while (QTcpSocket *connection = m_server.nextPendingConnection()) {
        ++m_connections;
        m_connection = connection;
        m_open = false;
        m_reading = true;
        m_request.clear();
        m_unread.clear();
        m_frames.clear();
        connect(connection, &QTcpSocket::readyRead, this, [this, connection] {
            if (connection == m_connection && m_reading)
                read();
        });
        connect(connection, &QTcpSocket::disconnected, connection, &QObject::deleteLater);
    }
}

void RawWebSocketServer::read()
{
    m_unread += m_connection->readAll();
    if (m_request.isEmpty()) {
        const qsizetype length = m_unread.indexOf("\r\n\r\n") + 4;
        if (length < 4)
            return;
        m_request = m_unread.first(length);
        m_unread.remove(0, length);
        if (m_answer)
            m_answer(m_connection);
        else
            shakeHands();
    }
    while (takeFrame()) {
    }
}

void RawWebSocketServer::shakeHands()
{
    const QByteArray key = header(m_request, "Sec-WebSocket-Key");
    const QByteArray accepted = QCryptographicHash::hash(
        key + "258EAFA5-E914-47DA-95CA-C5AB0DC85B11", QCryptographicHash::Sha1);
    send("HTTP/1.1 101 Switching Protocols\r\nUpgrade: websocket\r\nConnection: Upgrade\r\n"
         "Sec-WebSocket-Accept: "
         + accepted.toBase64() + "\r\n\r\n");
    m_open = true;
}

/// Expects masked frames, as clients send them.
bool RawWebSocketServer::takeFrame()
{
    if (m_unread.size() < 6)
        return false;
    qsizetype length = quint8(m_unread.at(1)) & 0x7f;
    qsizetype head = 2;
    if (length == 126)
        head += 2;
    else if (length == 127)
        head += 8;
    if (m_unread.size() < head + 4)
        return false;
    if (length == 126)
        length = qFromBigEndian<quint16>(m_unread.constData() + 2);
    else if (length == 127)
        length = qFromBigEndian<qint64>(m_unread.constData() + 2);
    if (m_unread.size() < head + 4 + length)
        return false;

    QByteArray payload = m_unread.mid(head + 4, length);
    for (qsizetype i = 0; i < length; ++i)
        payload[i] = char(payload.at(i) ^ m_unread.at(head + i % 4));
    m_frames.append({quint8(m_unread.at(0)), payload});
    m_unread.remove(0, head + 4 + length);
    return true;
}

} // namespace tidewick
