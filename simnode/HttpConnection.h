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

/// One client's connection: reads requests one after the other and sends what each is answered
/// with. What is read and what waits to be sent stay bounded, whatever the client does.
class HttpConnection final : public QObject
{
    Q_OBJECT

public:
    /// Called with each request that can be read.
    using Handler = std::function<Transmission(const HttpRequest &)>;

    /// Takes over the socket.
    HttpConnection(QTcpSocket *socket, Handler handler, QObject *parent);

signals:
    /// The connection is closed.
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
    /// An answer is being sent that is the last one; no more requests are read.
    bool m_last = false;
    QByteArray m_slowRest;
    QTimer m_slowTimer;
    qint64 m_fillerLeft = 0;
    bool m_chunked = false;
};

} // namespace tidewick::sim
