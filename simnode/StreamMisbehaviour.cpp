// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "simnode/StreamMisbehaviour.h"

#include "simnode/WebSocketFrames.h"

#include <QTcpSocket>

#include <algorithm>

#include <sys/socket.h>

namespace tidewick::sim {

namespace {

using namespace std::chrono_literals;
using Frames = WebSocketFrames;
using Kind = StreamFault::Kind;

constexpr qint64 MiB = 1024LL * 1024;
constexpr qint64 largeMessage = 17 * MiB;
constexpr qsizetype pieceOfEndless = 64LL * 1024;
/// With more than this waiting to be sent, messages of a flood are dropped.
constexpr qint64 mostWaiting = 16 * MiB;

/// Messages a second.
constexpr qint64 floodRate = 50'000;
constexpr std::chrono::milliseconds floodInterval = 10ms;

std::chrono::milliseconds timerSpan(Seconds seconds)
{
    return std::chrono::ceil<std::chrono::milliseconds>(seconds);
}

/// Meaningless bytes, the same ones each time.
QByteArray garbage()
{
    constexpr qsizetype size = 100'000;
    QByteArray bytes(size, Qt::Uninitialized);
    quint32 state = 1;
    std::generate(bytes.begin(), bytes.end(), [&state] {
        state = state * 1'664'525 + 1'013'904'223;
        return static_cast<char>(state >> 24);
    });
    return bytes;
}

QByteArray inPieces(const QByteArray &text)
{
    QByteArray bytes;
    for (qsizetype i = 0; i < text.size(); ++i) {
        const bool last = i + 1 == text.size();
        const quint8 first = last ? Frames::text : Frames::textBegin;
        const quint8 further = last ? Frames::end : Frames::middle;
        bytes += Frames::frame(i == 0 ? first : further, text.mid(i, 1));
    }
    return bytes;
}

} // namespace

StreamMisbehaviour::StreamMisbehaviour(StreamFault fault, const StreamFaults &faults, DebugLog &log,
                                       QTcpSocket *socket)
    : QObject(socket), m_fault(fault), m_faults(faults), m_log(log), m_socket(socket)
{
    for (QTimer *timer : {&m_beginner, &m_ender}) {
        timer->setSingleShot(true);
        timer->setTimerType(Qt::PreciseTimer); // other types may fire early
    }
    connect(&m_beginner, &QTimer::timeout, this, &StreamMisbehaviour::begin);
    connect(&m_ender, &QTimer::timeout, socket, &QTcpSocket::abort);
    connect(&m_floodTimer, &QTimer::timeout, this, &StreamMisbehaviour::flood);
    connect(socket, &QTcpSocket::disconnected, this, [this] {
        m_floodTimer.stop();
        m_beginner.stop();
        if (m_begun)
            m_log.info("Server", QStringLiteral("stream fault %1 is over, %2 messages, %3 bytes")
                                     .arg(m_fault.name())
                                     .arg(m_floodMessages)
                                     .arg(m_bytes));
    });
}

StreamMisbehaviour::~StreamMisbehaviour() = default;

void StreamMisbehaviour::beginLater(std::function<QList<QByteArray>()> texts)
{
    m_texts = std::move(texts);
    m_beginner.start(timerSpan(m_faults.after));
}

void StreamMisbehaviour::begin()
{
    m_begun = true;
    m_log.info("Server", QStringLiteral("stream fault %1 begins").arg(m_fault.name()));
    if (m_faults.duration)
        m_ender.start(timerSpan(*m_faults.duration));
    if (replacesHandshake())
        answerHandshake();
    else
        act();
}

/// Discards the client's request, which may still be on its way.
void StreamMisbehaviour::answerHandshake()
{
    connect(m_socket, &QTcpSocket::readyRead, this, [this] { m_socket->readAll(); });
    if (m_fault.kind == Kind::Refused)
        write("HTTP/1.1 403 Forbidden\r\nContent-Length: 0\r\n\r\n");
    else if (m_fault.kind == Kind::NotHttp)
        write(garbage() + "\r\n\r\n");
    else if (m_fault.kind == Kind::HangUp)
        m_socket->disconnectFromHost();
}

void StreamMisbehaviour::act()
{
    switch (m_fault.kind) {
    case Kind::Close:
        return write(Frames::frame(Frames::close, Frames::closing(m_fault.closeCode)));
    case Kind::Drop:
        return m_socket->abort();
    case Kind::Reset: {
        // Without lingering, closing the socket resets the connection.
        const linger none{1, 0};
        ::setsockopt(static_cast<int>(m_socket->socketDescriptor()), SOL_SOCKET, SO_LINGER, &none,
                     sizeof none);
        return m_socket->abort();
    }
    case Kind::Endless:
        write(Frames::frame(Frames::textBegin, "["));
        return pour(Frames::frame(Frames::middle, QByteArray(pieceOfEndless, ' ')));
    case Kind::Large:
        return write(Frames::frame(Frames::text, QByteArray(largeMessage, ' ')));
    case Kind::UnreadPings:
        disconnect(m_socket, &QTcpSocket::readyRead, nullptr, nullptr);
        m_socket->setReadBufferSize(1);
        [[fallthrough]];
    case Kind::Pings:
        return pour(Frames::frame(Frames::ping, QByteArray(100, 'p')).repeated(1000));
    case Kind::Flood:
        m_floodTime.start();
        return m_floodTimer.start(floodInterval);
    case Kind::Half:
        return write(Frames::frame(Frames::text, QByteArray(1000, ' ')).first(500));
    case Kind::Garbage:
        return write(garbage());
    case Kind::NotUtf8:
        return write(Frames::frame(Frames::text, "\xc0\xff"));
    default:
        return; // affects the node's messages, or nothing
    }
}

void StreamMisbehaviour::send(const QByteArray &text)
{
    if (m_fault.kind == Kind::Pieces)
        write(inPieces(text));
    else if (m_fault.kind == Kind::Binary)
        write(Frames::frame(Frames::binary, text));
    else if (m_fault.kind == Kind::Pings)
        write(Frames::frame(Frames::text, text));
}

/// Sends the same bytes again and again, as fast as the client takes them.
void StreamMisbehaviour::pour(const QByteArray &bytes)
{
    const auto more = [this, bytes] {
        while (m_socket->state() == QAbstractSocket::ConnectedState
               && m_socket->bytesToWrite() < MiB)
            write(bytes);
    };
    connect(m_socket, &QTcpSocket::bytesWritten, this, more);
    more();
}

/// A client that reads more slowly gets less.
void StreamMisbehaviour::flood()
{
    const QList<QByteArray> texts = m_texts();
    if (texts.isEmpty())
        return;
    QByteArray frames;
    for (const QByteArray &text : texts)
        frames += Frames::frame(Frames::text, text);
    const qint64 due = m_floodTime.restart() * floodRate / 1000;
    for (qint64 sent = 0; sent < due && m_socket->bytesToWrite() < mostWaiting;
         sent += texts.size()) {
        write(frames);
        m_floodMessages += texts.size();
    }
}

void StreamMisbehaviour::write(const QByteArray &bytes)
{
    m_bytes += bytes.size();
    m_socket->write(bytes);
}

} // namespace tidewick::sim
