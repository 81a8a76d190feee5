// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "node/NodeRPC.h"

#include "node/HttpResponseReader.h"
#include "platform/json/JsonRead.h"
#include "platform/tasks/Task.h"

#include <QHostAddress>
#include <QJsonArray>
#include <QJsonDocument>
#include <QTcpSocket>
#include <QTimer>

#include <chrono>
#include <memory>
#include <string>
#include <utility>

namespace tidewick {

namespace {

using namespace std::chrono_literals;

constexpr std::chrono::milliseconds idleLimit = 3s;
constexpr std::chrono::milliseconds totalLimit = 5s;
constexpr qint64 readBufferSize = qint64{256} * 1024;

QByteArray question(quint16 port, const QString &method)
{
    const QJsonObject object{{QStringLiteral("method"), method},
                             {QStringLiteral("params"), QJsonArray{QJsonObject()}}};
    const QByteArray body = QJsonDocument(object).toJson(QJsonDocument::Compact);
    // Requesting it uncompressed keeps a small answer from expanding into a large one.
    return "POST / HTTP/1.1\r\n"
           "Host: 127.0.0.1:"
           + QByteArray::number(port)
           + "\r\n"
             "Content-Type: application/json\r\n"
             "Content-Length: "
           + QByteArray::number(body.size())
           + "\r\n"
             "Accept-Encoding: identity\r\n"
             "Connection: close\r\n"
             "\r\n"
           + body;
}

/// One pending call: ends with the answer, a timeout or the end of the session, whichever comes
/// first. Owned by the calling coroutine.
class Exchange
{
public:
    Exchange(const QObject &session, quint16 port, const QByteArray &question)
    {
        QTcpSocket *socket = m_socket.get();
        QObject::connect(socket, &QTcpSocket::connected, &m_context,
                         [socket, question] { socket->write(question); });
        QObject::connect(socket, &QTcpSocket::readyRead, &m_context, [this] { takeBytes(); });
        QObject::connect(socket, &QTcpSocket::errorOccurred, &m_context,
                         [this](QAbstractSocket::SocketError error) { takeEnd(error); });
        QObject::connect(&session, &QObject::destroyed, &m_context, [this] { resolve({}); });
        for (QTimer *timer : {&m_idle, &m_total}) {
            timer->setSingleShot(true);
            timer->setTimerType(Qt::PreciseTimer);
            QObject::connect(timer, &QTimer::timeout, &m_context, [this] { resolve({}); });
        }
        m_idle.start(idleLimit);
        m_total.start(totalLimit);

        // Limits the amount of received data that waits to be read.
        socket->setReadBufferSize(readBufferSize);
        // Bypasses any proxy, as Qt's sockets do for loopback.
        socket->connectToHost(QHostAddress(QHostAddress::LocalHost), port);
    }

    /// Resolved with the body, or with nothing.
    OneShot<std::optional<std::string>> &body() { return m_body; }

private:
    /// Deletes the socket later, because its own signal may be what ends the exchange.
    struct DeleteLater
    {
        void operator()(QTcpSocket *socket) const
        {
            socket->abort();
            socket->deleteLater();
        }
    };

    void takeBytes()
    {
        m_idle.start();
        settle(m_response.take(m_socket->readAll()));
    }

    void takeEnd(QAbstractSocket::SocketError error)
    {
        HttpResponseReader::State state = m_response.take(m_socket->readAll());
        if (error == QAbstractSocket::RemoteHostClosedError)
            state = m_response.end();
        if (state != HttpResponseReader::State::Complete)
            state = HttpResponseReader::State::Broken;
        settle(state);
    }

    void settle(HttpResponseReader::State state)
    {
        if (state == HttpResponseReader::State::Complete)
            resolve(m_response.takeBody());
        else if (state == HttpResponseReader::State::Broken)
            resolve({});
    }

    /// Ends the calling coroutine, and this object with it.
    void resolve(std::optional<std::string> body) { m_body.resolve(std::move(body)); }

    HttpResponseReader m_response{NodeRPC::largestAnswer};
    QTimer m_idle;
    QTimer m_total;
    std::unique_ptr<QTcpSocket, DeleteLater> m_socket{new QTcpSocket};
    OneShot<std::optional<std::string>> m_body;
    QObject m_context;
};

} // namespace

std::optional<QJsonObject> NodeRPC::resultOf(const QByteArray &body)
{
    const auto answer = JsonRead::parseObject(body);
    return answer ? JsonRead::object((*answer)[u"result"]) : std::nullopt;
}

QCoro::Task<std::optional<QJsonObject>> NodeRPC::call(QString method)
{
    Exchange exchange(m_session, m_port, question(m_port, method));
    // Accesses no member from here on: this object may be gone when the answer arrives.
    const std::optional<std::string> body = co_await exchange.body();
    if (!body)
        co_return std::nullopt;
    co_return resultOf(QByteArray::fromRawData(body->data(), static_cast<qsizetype>(body->size())));
}

} // namespace tidewick
