// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QByteArrayList>
#include <QTcpServer>

#include <functional>

class QTcpSocket;

namespace tidewick {

/// A server on loopback that answers HTTP requests with the bytes a test says, right or wrong.
class RawServer final : public QObject
{
    Q_OBJECT

public:
    /// Called with the connection once a request is there whole.
    using Answer = std::function<void(QTcpSocket *connection)>;

    /// Port 0: any that is free.
    explicit RawServer(Answer answer, quint16 port = 0);

    quint16 port() const { return m_server.serverPort(); }

    /// Gives the port back; connections stay.
    void stopListening() { m_server.close(); }

    /// The requests so far, with their headers.
    const QByteArrayList &requests() const { return m_requests; }

    /// Connections accepted so far.
    int connections() const { return m_connections; }

    /// What the kernel took for the client, in bytes, of all that was written.
    qint64 sent() const { return m_sent; }

    /// A whole answer with this body.
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
