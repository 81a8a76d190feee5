// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QByteArrayList>
#include <QTcpServer>

#include <functional>

class QTcpSocket;

namespace tidewick {

/// A loopback server that answers HTTP requests with exactly the bytes a test specifies, valid or
/// not.
class RawServer final : public QObject
{
    Q_OBJECT

public:
    /// Called with the connection when a complete request has arrived.
    using Answer = std::function<void(QTcpSocket *connection)>;

    /// Port 0 selects any free port.
    explicit RawServer(Answer answer, quint16 port = 0);

    quint16 port() const { return m_server.serverPort(); }

    /// Releases the port; existing connections stay open.
    void stopListening() { m_server.close(); }

    /// The requests so far, including their headers.
    const QByteArrayList &requests() const { return m_requests; }

    /// Connections accepted so far.
    int connections() const { return m_connections; }

    /// The number of bytes, of all those written, that the kernel has accepted for sending to
    /// clients.
    qint64 sent() const { return m_sent; }

    /// A complete response with this body.
    static QByteArray http(const QByteArray &body, const QByteArray &status = "200 OK",
                           const QByteArray &extraHeaders = {});

signals:
    void disconnected();

private:
    void accept();
    void read(QTcpSocket *connection, QByteArray &unread);

    QTcpServer m_server;
    Answer m_answer;
    QByteArrayList m_requests;
    int m_connections = 0;
    qint64 m_sent = 0;
};

} // namespace tidewick
