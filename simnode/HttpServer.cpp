// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "simnode/HttpServer.h"

#include "platform/json/JsonRead.h"
#include "simnode/HttpConnection.h"
#include "simnode/Recordings.h"

#include <QJsonArray>
#include <QJsonDocument>

#include <memory>

namespace tidewick::sim {

namespace {

/// Further clients are turned away.
constexpr int mostConnections = 256;
/// Beyond this number of unread connections, the oldest ones are closed.
constexpr std::size_t mostUnread = 256;

HttpResponse jsonResponse(const QJsonObject &body)
{
    HttpResponse response;
    response.body = QJsonDocument(body).toJson(QJsonDocument::Compact) + "\n\r\n";
    return response;
}

HttpResponse badJsonResponse()
{
    HttpResponse response;
    response.status = 400;
    response.body = Recordings::text(QStringLiteral("bad_json.txt"));
    return response;
}

HttpResponse wrongMethodResponse()
{
    HttpResponse response;
    response.status = 405;
    response.contentType = "text/plain; charset=UTF-8";
    response.extraHeaders = {"Allow: POST"};
    return response;
}

} // namespace

HttpServer::HttpServer(Command command, RpcFaults faults, DebugLog &log, QObject *parent)
    : QTcpServer(parent), m_command(std::move(command)), m_faults(std::move(faults)), m_log(log)
{
}

bool HttpServer::open(const PortConfiguration &port)
{
    m_openedAt = std::chrono::steady_clock::now();
    return listen(port.address, port.number);
}

bool HttpServer::misbehaves() const
{
    return !m_faults.onCue && std::chrono::steady_clock::now() - m_openedAt >= m_faults.after;
}

void HttpServer::incomingConnection(qintptr descriptor)
{
    UniqueDescriptor owned(static_cast<int>(descriptor));
    if (m_connections >= mostConnections)
        return;
    if (m_faults.all == RpcFault::Unread && m_faults.ofMethod.isEmpty() && misbehaves()) {
        m_unread.push_back(std::move(owned));
        if (m_unread.size() > mostUnread)
            m_unread.pop_front();
        return;
    }
    auto socket = std::make_unique<QTcpSocket>();
    if (!socket->setSocketDescriptor(owned.get()))
        return;
    (void)owned.release(); // owned by the socket from here on
    auto *connection = new HttpConnection(
        socket.release(), [this](const HttpRequest &request) { return answer(request); }, this);
    ++m_connections;
    connect(connection, &HttpConnection::closed, this, [this, connection] {
        --m_connections;
        connection->deleteLater();
    });
}

Transmission HttpServer::answer(const HttpRequest &request)
{
    if (!request.cookie.isEmpty())
        m_log.info("Server", QStringLiteral("cookie ") + QString::fromLatin1(request.cookie));
    if (request.method != "POST")
        return {wrongMethodResponse()};
    const auto call = JsonRead::parseObject(request.body);
    if (!call || !(*call)[u"method"].isString())
        return {badJsonResponse()};
    return answerCall(*call);
}

Transmission HttpServer::answerCall(const QJsonObject &call)
{
    const QString method = call[u"method"].toString();
    const QJsonObject parameters = call[u"params"][0].toObject();
    m_log.command(method);

    const RpcFault fault = misbehaves() ? m_faults.of(method) : RpcFault::None;
    HttpResponse usual;
    if (usesTheUsualAnswer(fault))
        usual = jsonResponse(httpEnvelope(m_command(method, parameters), method, parameters));
    if (fault == RpcFault::Recorded)
        usual.body = recordedAnswer(method, usual.body);
    return transmissionFor(fault, usual, m_faults.redirectPort);
}

/// The first request gets the recording of the node that had just started, later ones the other.
QByteArray HttpServer::recordedAnswer(const QString &method, const QByteArray &otherwise)
{
    const bool later = m_answeredAsRecorded.contains(method);
    m_answeredAsRecorded.insert(method);
    return Recordings::answer(method, later).value_or(otherwise);
}

} // namespace tidewick::sim
