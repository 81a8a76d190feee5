// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "feed/NodeStream.h"

#include "platform/NodePorts.h"

#include <QTcpSocket>
#include <QUrl>

namespace tidewick {

namespace {

/// In bytes of UTF-8.
constexpr qint64 largestMessage = 16LL * 1024 * 1024;

/// A frame is received whole before it is read, so the buffer holds the largest one with its
/// header.
constexpr qint64 readBuffer = largestMessage + 64;

/// In bytes. The feed sends about 5 KB at once at most.
constexpr qint64 largestBacklog = 1024LL * 1024;

// Qt 6.5 renamed the signal.
#if QT_VERSION >= QT_VERSION_CHECK(6, 5, 0)
constexpr auto errorOccurred = &QWebSocket::errorOccurred;
#else
constexpr auto errorOccurred = qOverload<QAbstractSocket::SocketError>(&QWebSocket::error);
#endif

} // namespace

NodeStream::NodeStream(std::chrono::milliseconds handshakeLimit)
{
    m_socket.setMaxAllowedIncomingMessageSize(largestMessage);
    m_socket.setMaxAllowedIncomingFrameSize(largestMessage);
    m_socket.setReadBufferSize(readBuffer);

    connect(&m_socket, &QWebSocket::connected, this, &NodeStream::shakenHands);
    connect(&m_socket, &QWebSocket::textMessageReceived, this, &NodeStream::take);
    connect(&m_socket, &QWebSocket::disconnected, this, &NodeStream::fail);
    connect(&m_socket, errorOccurred, this, &NodeStream::fail);
    connect(&m_handshakeTimer, &QTimer::timeout, this, &NodeStream::fail);
    m_handshakeTimer.setSingleShot(true);
    m_handshakeTimer.start(handshakeLimit);

    // Opened from the event loop, because opening can fail immediately, before anybody is connected
    // to the signals.
    connect(&m_opener, &QTimer::timeout, this, &NodeStream::open);
    m_opener.setSingleShot(true);
    m_opener.start(0);
}

/// Aborts, because a connected QWebSocket would send a close frame.
NodeStream::~NodeStream()
{
    m_socket.disconnect(this);
    m_socket.abort();
}

void NodeStream::open()
{
    QUrl url;
    url.setScheme(QStringLiteral("ws"));
    url.setHost(QStringLiteral("127.0.0.1"));
    url.setPort(NodePorts::webSocket);
    m_socket.open(url);
    if (const auto *inner = m_socket.findChild<QTcpSocket *>())
        connect(inner, &QTcpSocket::readyRead, this, &NodeStream::checkBacklog);
}

/// A QWebSocket answers every ping, and queues the answers while the other side does not read them.
void NodeStream::checkBacklog()
{
    if (m_socket.bytesToWrite() > largestBacklog)
        fail();
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
    finish();
    // There are no frames before the handshake.
    if (m_socket.isValid())
        m_socket.close(QWebSocketProtocol::CloseCodeGoingAway);
    else
        m_socket.abort();
}

void NodeStream::shakenHands()
{
    m_handshakeTimer.stop();
    for (const QString &text : std::exchange(m_waiting, {}))
        m_socket.sendTextMessage(text);
}

/// Checks the size again, because QWebSocket measures fragmented messages in UTF-16.
void NodeStream::take(const QString &text)
{
    if (text.size() > largestMessage / 3 && text.toUtf8().size() > largestMessage)
        fail();
    else
        emit received(text);
}

/// From now on, no signal is emitted.
void NodeStream::finish()
{
    m_over = true;
    m_opener.stop();
    m_handshakeTimer.stop();
    m_socket.disconnect(this);
}

void NodeStream::fail()
{
    if (m_over)
        return;
    finish();
    emit failed();
}

} // namespace tidewick
