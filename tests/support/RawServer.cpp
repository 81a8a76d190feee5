// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "support/RawServer.h"

#include <QTcpSocket>

namespace tidewick {

namespace {

/// The length of the request at the start of the bytes, or 0 if it is not yet complete.
qsizetype requestLength(const QByteArray &bytes)
{
    const qsizetype headersEnd = bytes.indexOf("\r\n\r\n");
    if (headersEnd < 0)
        return 0;
    qsizetype length = headersEnd + 4;
    const QByteArray headers = bytes.left(headersEnd).toLower();
    if (const qsizetype at = headers.indexOf("content-length:"); at >= 0)
        length += headers.mid(at + 15).split('\r')[0].trimmed().toLongLong();
    return bytes.size() >= length ? length : 0;
}

} // namespace

RawServer::RawServer(Answer answer, quint16 port) : m_answer(std::move(answer))
{
    if (!m_server.listen(QHostAddress::LocalHost, port))
        qFatal("The test server cannot listen: %s", qPrintable(m_server.errorString()));
    connect(&m_server, &QTcpServer::newConnection, this, &RawServer::accept);
}

QByteArray RawServer::http(const QByteArray &body, const QByteArray &status,
                           const QByteArray &extraHeaders)
{
    return "HTTP/1.1 " + status + "\r\nContent-Type: application/json\r\n" + extraHeaders
           + "Content-Length: " + QByteArray::number(body.size()) + "\r\n\r\n" + body;
}

void RawServer::accept()
{
    while (QTcpSocket *connection = m_server.nextPendingConnection()) {
        ++m_connections;
        connect(connection, &QTcpSocket::readyRead, this,
                [this, connection, unread = QByteArray()]() mutable { read(connection, unread); });
        connect(connection, &QTcpSocket::bytesWritten, this, [this](qint64 n) { m_sent += n; });
        connect(connection, &QTcpSocket::disconnected, this, &RawServer::disconnected);
        connect(connection, &QTcpSocket::disconnected, connection, &QObject::deleteLater);
    }
}

void RawServer::read(QTcpSocket *connection, QByteArray &unread)
{
    unread += connection->readAll();
    while (const qsizetype length = requestLength(unread)) {
        m_requests += unread.left(length);
        unread.remove(0, length);
        m_answer(connection);
    }
}

} // namespace tidewick
