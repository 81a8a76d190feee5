// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "simnode/StreamServer.h"

#include "platform/json/JsonRead.h"
#include "simnode/StreamMisbehaviour.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QTcpSocket>
#include <QWebSocket>

namespace tidewick::sim {

namespace {

/// Further clients are turned away.
constexpr std::size_t mostClients = 256;
constexpr quint64 largestRequest = 1024ULL * 1024;
/// A client with more than this waiting to be sent is dropped.
constexpr qint64 mostWaiting = 64LL * 1024 * 1024;

QString textOf(const QJsonObject &object)
{
    return QString::fromUtf8(QJsonDocument(object).toJson(QJsonDocument::Compact));
}

/// Messages other than answers end in a line feed.
QString messageText(const QJsonObject &object)
{
    return textOf(object) + u'\n';
}

QString notJsonText(const QString &request)
{
    return messageText({{QStringLiteral("error"), QStringLiteral("jsonInvalid")},
                        {QStringLiteral("type"), QStringLiteral("error")},
                        {QStringLiteral("value"), request}});
}

} // namespace

StreamServer::StreamServer(Source source, StreamFaults faults, DebugLog &log, QObject *parent)
    : QObject(parent), m_source(std::move(source)), m_faults(std::move(faults)), m_log(log),
      m_server(QStringLiteral("simulated-xrpld"), QWebSocketServer::NonSecureMode)
{
    connect(&m_listener, &QTcpServer::newConnection, this, &StreamServer::acceptConnection);
    connect(&m_server, &QWebSocketServer::newConnection, this, &StreamServer::accept);
}

StreamServer::~StreamServer()
{
    for (const auto &[client, subscription] : m_clients) {
        client->disconnect(this);
        client->close();
        delete client;
    }
}

bool StreamServer::open(const PortConfiguration &port)
{
    return m_listener.listen(port.address, port.number);
}

void StreamServer::acceptConnection()
{
    while (QTcpSocket *socket = m_listener.nextPendingConnection()) {
        connect(socket, &QTcpSocket::disconnected, socket, &QObject::deleteLater);
        const StreamFault fault = m_faults.of(m_connections++);
        if (fault.kind != StreamFault::Kind::None) {
            auto *misbehaviour = new StreamMisbehaviour(fault, m_faults, m_log, socket);
            if (misbehaviour->replacesHandshake()) {
                misbehaviour->begin();
                continue;
            }
            const quint16 port = socket->peerPort();
            m_misbehaviours[port] = misbehaviour;
            connect(socket, &QTcpSocket::disconnected, this,
                    [this, port] { m_misbehaviours.erase(port); });
        }
        m_server.handleConnection(socket);
    }
}

/// A flood repeats the transactions of the newest ledger.
void StreamServer::spoilLater(StreamMisbehaviour &misbehaviour) const
{
    misbehaviour.beginLater([this] {
        QList<QByteArray> texts;
        if (const auto validated = m_source.validated()) {
            const Ledger ledger = m_source.ledgers.ledger(validated->last);
            for (const QString &text : transactionTexts(ledger, ApiForm::Classic))
                texts += text.toUtf8();
        }
        return texts;
    });
}

void StreamServer::accept()
{
    while (QWebSocket *client = m_server.nextPendingConnection()) {
        if (m_clients.size() >= mostClients) {
            client->abort();
            client->deleteLater();
            continue;
        }
        client->setMaxAllowedIncomingMessageSize(largestRequest);
        client->setMaxAllowedIncomingFrameSize(largestRequest);
        m_clients[client] = {};
        if (const auto known = m_misbehaviours.find(client->peerPort());
            known != m_misbehaviours.end())
            spoilLater(*known->second);
        connect(client, &QWebSocket::textMessageReceived, this,
                [this, client](const QString &text) { receive(client, text); });
        connect(client, &QWebSocket::disconnected, this, [this, client] {
            m_clients.erase(client);
            client->deleteLater();
        });
    }
}

void StreamServer::receive(QWebSocket *client, const QString &text)
{
    const auto request = JsonRead::parseObject(text.toUtf8());
    if (!request)
        return send(client, notJsonText(text));
    m_log.command((*request)[u"command"].toString());
    const Reply reply = run(*request, m_clients.at(client));
    send(client, textOf(webSocketEnvelope(reply, *request)));
}

Reply StreamServer::run(const QJsonObject &request, Subscription &subscription) const
{
    const QString command = request[u"command"].toString();
    if (command == u"subscribe" || command == u"unsubscribe")
        return subscribe(request, subscription);
    return m_source.command(command, request);
}

/// If one of the streams is unknown, nothing is changed.
Reply StreamServer::subscribe(const QJsonObject &request, Subscription &subscription) const
{
    const bool wanted = request[u"command"] == QLatin1String("subscribe");
    Subscription changed = subscription;
    for (const QJsonValue stream : request[u"streams"].toArray()) {
        if (stream == QLatin1String("ledger"))
            changed.ledger = wanted;
        else if (stream == QLatin1String("transactions"))
            changed.transactions = wanted;
        else
            return RpcErrors::malformedStream;
    }
    if (wanted)
        changed.form = apiFormOf(request);
    const bool tellsLedger = wanted && changed.ledger && !subscription.ledger;
    subscription = changed;
    const auto validated = m_source.validated();
    return tellsLedger && validated ? m_source.ledgers.subscribed(*validated) : QJsonObject();
}

QStringList StreamServer::transactionTexts(const Ledger &ledger, ApiForm form) const
{
    QStringList texts;
    for (std::size_t i = 0; i < ledger.transactions.size(); ++i)
        texts += messageText(m_source.ledgers.transaction(ledger, i, form));
    return texts;
}

void StreamServer::publish(quint32 index)
{
    const auto validated = m_source.validated();
    if (!validated || m_clients.empty())
        return;
    const Ledger ledger = m_source.ledgers.ledger(index);
    const QString closed = messageText(m_source.ledgers.closed(ledger, *validated));

    std::map<ApiForm, QStringList> transactions;
    // Sending may drop a client and remove its entry.
    const std::map<QWebSocket *, Subscription> clients = m_clients;
    for (const auto &[client, subscription] : clients) {
        if (subscription.ledger)
            send(client, closed);
        if (!subscription.transactions)
            continue;
        const auto [texts, isNew] = transactions.try_emplace(subscription.form);
        if (isNew)
            texts->second = transactionTexts(ledger, subscription.form);
        for (const QString &text : texts->second)
            send(client, text);
    }
}

void StreamServer::send(QWebSocket *client, const QString &text)
{
    if (const auto known = m_misbehaviours.find(client->peerPort());
        known != m_misbehaviours.end() && known->second->hasBegun())
        return known->second->send(text.toUtf8());
    client->sendTextMessage(text);
    if (client->bytesToWrite() > mostWaiting) {
        m_log.write("Server", DebugLog::Severity::Warning,
                    QStringLiteral("a WebSocket client reads too slowly and is dropped"));
        client->abort();
    }
}

} // namespace tidewick::sim
