// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "simnode/HttpConnection.h"

#include <algorithm>
#include <chrono>

#include <sys/socket.h>

namespace tidewick::sim {

namespace {

using namespace std::chrono_literals;

constexpr qint64 readBuffer = 64LL * 1024;
/// While more than this waits to be sent, requests are left unread.
constexpr qint64 mostWaiting = 1024LL * 1024;
constexpr std::chrono::milliseconds slowInterval = 1s;
constexpr qint64 fillerBlock = 64LL * 1024;

} // namespace

HttpConnection::HttpConnection(QTcpSocket *socket, Handler handler, QObject *parent)
    : QObject(parent), m_socket(socket), m_handler(std::move(handler))
{
    m_socket->setParent(this);
    m_socket->setReadBufferSize(readBuffer);
    m_slowTimer.setInterval(slowInterval);
    connect(&m_slowTimer, &QTimer::timeout, this, &HttpConnection::sendNextByte);
    connect(m_socket, &QTcpSocket::readyRead, this, &HttpConnection::readRequests);
    connect(m_socket, &QTcpSocket::bytesWritten, this, &HttpConnection::sendFiller);
    connect(m_socket, &QTcpSocket::bytesWritten, this, &HttpConnection::readRequests);
    connect(m_socket, &QTcpSocket::disconnected, this, &HttpConnection::closed);
}

void HttpConnection::readRequests()
{
    while (!m_last && m_socket->bytesToWrite() < mostWaiting) {
        m_input += m_socket->readAll();
        const HttpInput input = HttpInput::read(m_input);
        switch (input.state) {
        case HttpInput::State::Incomplete:
            return;
        case HttpInput::State::Malformed:
            return refuse(400);
        case HttpInput::State::TooLarge:
            return refuse(413);
        case HttpInput::State::Complete:
            m_input.remove(0, input.length);
            send(m_handler(input.request), input.request.keepAlive);
        }
    }
}

void HttpConnection::refuse(int status)
{
    Transmission transmission;
    transmission.response.status = status;
    transmission.response.contentType = "text/plain; charset=UTF-8";
    send(transmission, false);
}

void HttpConnection::send(const Transmission &transmission, bool keepAlive)
{
    HttpResponse response = transmission.response;
    m_last = transmission.closes || !keepAlive;
    response.extraHeaders.append(keepAlive ? "Connection: Keep-Alive" : "Connection: close");
    m_chunked = transmission.delivery == Delivery::ChunkedFiller;
    m_fillerLeft = transmission.filler;
    const auto length =
        m_chunked ? std::nullopt : std::optional<qint64>(response.body.size() + m_fillerLeft);
    const QByteArray head = response.head(length);

    switch (transmission.delivery) {
    case Delivery::Whole:
        m_socket->write(head + response.body);
        // Immediately, since the request may have been to stop.
        m_socket->flush();
        if (m_last)
            m_socket->disconnectFromHost();
        break;
    case Delivery::Half:
        m_socket->write(head + response.body.left(response.body.size() / 2));
        m_socket->disconnectFromHost();
        break;
    case Delivery::Reset:
        m_socket->write(head + response.body.left(response.body.size() / 2));
        reset();
        break;
    case Delivery::Drip:
        m_socket->write(head);
        startSlowly(response.body);
        break;
    case Delivery::SlowHeader:
        startSlowly(head + response.body);
        break;
    case Delivery::Filler:
    case Delivery::ChunkedFiller:
        m_socket->write(head);
        sendFiller();
        break;
    case Delivery::HeaderFiller:
        m_socket->write(head.chopped(2) + "X-Filler: "); // without the empty line
        sendFiller();
        break;
    case Delivery::Never:
        break;
    }
}

void HttpConnection::startSlowly(const QByteArray &bytes)
{
    m_slowRest = bytes;
    sendNextByte();
    m_slowTimer.start();
}

void HttpConnection::sendNextByte()
{
    m_socket->write(m_slowRest.left(1));
    m_slowRest.remove(0, 1);
    if (m_slowRest.isEmpty()) {
        m_slowTimer.stop();
        m_socket->disconnectFromHost();
    }
}

void HttpConnection::sendFiller()
{
    if (m_fillerLeft == 0)
        return;
    static const QByteArray block(fillerBlock, 'x');
    while (m_fillerLeft > 0 && m_socket->bytesToWrite() < mostWaiting) {
        const qint64 length = std::min(m_fillerLeft, fillerBlock);
        if (m_chunked)
            m_socket->write(QByteArray::number(length, 16) + "\r\n");
        m_socket->write(block.left(length));
        if (m_chunked)
            m_socket->write("\r\n");
        m_fillerLeft -= length;
    }
    if (m_fillerLeft == 0) {
        if (m_chunked)
            m_socket->write("0\r\n\r\n");
        m_socket->disconnectFromHost();
    }
}

void HttpConnection::reset()
{
    m_socket->flush();
    // Without lingering, closing the socket resets the connection.
    const linger none{1, 0};
    ::setsockopt(static_cast<int>(m_socket->socketDescriptor()), SOL_SOCKET, SO_LINGER, &none,
                 sizeof none);
    m_socket->abort();
}

} // namespace tidewick::sim
