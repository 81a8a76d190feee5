// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "feed/NodeStream.h"

#include "platform/NodePorts.h"

#include <QNetworkProxy>
#include <QUrl>

namespace tidewick {

namespace {

using namespace std::chrono_literals;

constexpr quint64 largestMessage = 16ULL * 1024 * 1024;

/// A frame is taken in whole before it is read, so the buffer holds the largest with its header.
constexpr qint64 readBuffer = qint64(largestMessage) + 64;

constexpr std::chrono::seconds handshakeLimit = 60s;

} // namespace

NodeStream::NodeStream()
{
    m_socket.setProxy(QNetworkProxy::NoProxy);
    m_socket.setMaxAllowedIncomingMessageSize(largestMessage);
    m_socket.setMaxAllowedIncomingFrameSize(largestMessage);
    m_socket.setReadBufferSize(readBuffer);

    connect(&m_socket, &QWebSocket::connected, this, &NodeStream::shakenHands);
    connect(&m_socket, &QWebSocket::textMessageReceived, this, &NodeStream::received);
    connect(&m_socket, &QWebSocket::disconnected, this, &NodeStream::fail);
    connect(&m_socket, qOverload<QAbstractSocket::SocketError>(&QWebSocket::error), this,
            &NodeStream::fail);
    connect(&m_handshakeLimit, &QTimer::timeout, this, &NodeStream::fail);
    m_handshakeLimit.setSingleShot(true);
    m_handshakeLimit.start(handshakeLimit);

    // From the event loop, since opening can fail then and there, before anybody listens.
    QMetaObject::invokeMethod(this, &NodeStream::open, Qt::QueuedConnection);
}

NodeStream::~NodeStream()
{
    m_socket.disconnect(this);
}

void NodeStream::open()
{
    QUrl url;
    url.setScheme(QStringLiteral("ws"));
    url.setHost(QStringLiteral("127.0.0.1"));
    url.setPort(NodePorts::webSocket);
    m_socket.open(url);
}

void NodeStream::send(const QString &text)
{
    if (m_socket.isValid())
        m_socket.sendTextMessage(text);
    else
        m_waiting += text;
}

void NodeStream::goAway()
{
    m_socket.disconnect(this);
    m_socket.close(QWebSocketProtocol::CloseCodeGoingAway);
}

void NodeStream::shakenHands()
{
    m_handshakeLimit.stop();
    for (const QString &text : std::exchange(m_waiting, {}))
        m_socket.sendTextMessage(text);
}

void NodeStream::fail()
{
    m_socket.disconnect(this);
    m_handshakeLimit.stop();
    emit failed();
}

} // namespace tidewick
