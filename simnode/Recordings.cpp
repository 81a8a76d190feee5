// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "simnode/Recordings.h"

#include "platform/json/JsonRead.h"

#include <QFile>
#include <QHash>

#include <algorithm>

namespace tidewick::sim::Recordings {

namespace {

/// The node's messages of a recorded session, in order.
std::vector<QJsonObject> nodeMessages(const QString &file)
{
    std::vector<QJsonObject> messages;
    for (const QByteArray &line : text(file).split('\n')) {
        const auto frame = JsonRead::parseObject(line);
        if (!frame || (*frame)[u"from"] != QLatin1String("node"))
            continue;
        if (auto message = JsonRead::parseObject((*frame)[u"text"].toString().toUtf8()))
            messages.push_back(std::move(*message));
    }
    return messages;
}

const std::vector<QJsonObject> &classicSession()
{
    static const std::vector<QJsonObject> messages = nodeMessages(QStringLiteral("stream.jsonl"));
    return messages;
}

bool isTransaction(const QJsonObject &message)
{
    return message[u"type"] == QLatin1String("transaction");
}

std::vector<TransactionMessage> readTransactions()
{
    // The newer session announced each transaction twice.
    QHash<QString, QJsonObject> newer;
    for (const QJsonObject &message : nodeMessages(QStringLiteral("stream-tx_json.jsonl"))) {
        if (isTransaction(message))
            newer[message[u"hash"].toString()] = message;
    }
    std::vector<TransactionMessage> transactions;
    for (const QJsonObject &message : classicSession()) {
        const auto counterpart = newer.constFind(message[u"transaction"][u"hash"].toString());
        if (isTransaction(message) && counterpart != newer.constEnd())
            transactions.push_back({message, *counterpart});
    }
    return transactions;
}

/// The first message that satisfies the predicate. One always does, since the recording is built
/// in.
template <typename Predicate>
QJsonObject first(Predicate &&has)
{
    const std::vector<QJsonObject> &messages = classicSession();
    const auto found = std::find_if(messages.begin(), messages.end(), has);
    return found == messages.end() ? QJsonObject() : *found;
}

} // namespace

QByteArray text(const QString &file)
{
    QFile resource(QLatin1String(":/wire/") + file);
    if (!resource.open(QIODevice::ReadOnly))
        qFatal("The recording %s is not built in", qUtf8Printable(file));
    return resource.readAll();
}

QJsonObject result(const QString &file)
{
    QJsonObject result =
        JsonRead::parseObject(text(file)).value_or(QJsonObject())[u"result"].toObject();
    result.remove(u"status");
    return result;
}

std::optional<QByteArray> answer(const QString &method, bool later)
{
    if (method == u"stop")
        return text(QStringLiteral("stop.json"));
    if (method == u"server_info" || method == u"get_counts")
        return text(method + QLatin1String(later ? "_later.json" : ".json"));
    return std::nullopt;
}

const std::vector<TransactionMessage> &transactions()
{
    static const std::vector<TransactionMessage> recorded = readTransactions();
    return recorded;
}

QJsonObject ledgerResult()
{
    // The very first ledger has no date, and an open one has no hash.
    const QJsonObject answer = first([](const QJsonObject &message) {
        return message[u"result"][u"ledger"][u"close_time_iso"].isString();
    });
    return answer[u"result"].toObject();
}

QJsonObject ledgerClosed()
{
    return first([](const QJsonObject &message) {
        return message[u"type"] == QLatin1String("ledgerClosed");
    });
}

} // namespace tidewick::sim::Recordings
