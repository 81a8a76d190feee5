// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include "simnode/Transmission.h"

#include <QByteArray>
#include <QObject>
#include <QTcpSocket>
#include <QTimer>

#include <functional>

namespace tidewick::sim {

/// The connection of one client: reads requests one after the other and sends the answers. The
/// buffers for reading and sending stay bounded, whatever the client does.
class HttpConnection final : public QObject
{
    Q_OBJECT

public:
    /// Called with each well-formed request.
    using Handler = std::function<Transmission(const HttpRequest &)>;

    /// Takes ownership of the socket.
    HttpConnection(QTcpSocket *socket, Handler handler, QObject *parent);

signals:
    /// The connection has been closed.
    void closed();

private:
    void readRequests();
    void refuse(int status);
    void send(const Transmission &transmission, bool keepAlive);
    void startSlowly(const QByteArray &bytes);
    void sendNextByte();
    void sendFiller();
    void reset();

    QTcpSocket *m_socket;
    Handler m_handler;
    QByteArray m_input;
    /// The last answer is being sent; no more requests are read.
    bool m_last = false;
    QByteArray m_slowRest;
    QTimer m_slowTimer;
    qint64 m_fillerLeft = 0;
    bool m_chunked = false;
};

} // namespace tidewick::sim
