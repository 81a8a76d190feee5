// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "simnode/LedgerMessages.h"

#include "platform/json/JsonRead.h"
#include "platform/text/NumberText.h"
#include "simnode/DateText.h"
#include "simnode/Recordings.h"

#include <QJsonArray>

#include <algorithm>
#include <limits>

namespace tidewick::sim {

namespace {

qint64 jsonIndex(quint32 index)
{
    return index;
}

/// The index as it appears inside a ledger: a string for classic clients, else a number.
QJsonValue indexValue(quint32 index, ApiForm form)
{
    return form == ApiForm::Newer ? QJsonValue(jsonIndex(index))
                                  : QJsonValue(QString::number(index));
}

/// The hashes in the order of the tree in which a ledger keeps its transactions.
QJsonArray hashes(const Ledger &ledger)
{
    QStringList sorted;
    for (const LedgerTransaction &transaction : ledger.transactions)
        sorted += transaction.hash;
    sorted.sort();
    return QJsonArray::fromStringList(sorted);
}

QJsonObject describeOpen(quint32 index, const QString &parentHash, const QJsonObject &request)
{
    QJsonObject ledger{{QStringLiteral("closed"), false},
                       {QStringLiteral("ledger_index"), indexValue(index, apiFormOf(request))},
                       {QStringLiteral("parent_hash"), parentHash}};
    if (request[u"transactions"].toBool())
        ledger[u"transactions"] = QJsonArray();
    return {{QStringLiteral("ledger"), ledger},
            {QStringLiteral("ledger_current_index"), jsonIndex(index)},
            {QStringLiteral("validated"), false}};
}

/// The ledger that a request names, or nothing if its "ledger_index" is malformed.
std::optional<quint32> requestedIndex(const QJsonValue &value, LedgerRange validated)
{
    if (value.isUndefined() || value == QLatin1String("current"))
        return validated.last + 1;
    if (value == QLatin1String("validated") || value == QLatin1String("closed"))
        return validated.last;
    const auto index =
        value.isString() ? NumberText::integer(value.toString()) : JsonRead::integer(value);
    if (!index || *index < 0 || *index > std::numeric_limits<quint32>::max())
        return std::nullopt;
    return static_cast<quint32>(*index);
}

} // namespace

QString LedgerRange::text() const
{
    return first == last ? QString::number(first) : QStringLiteral("%1-%2").arg(first).arg(last);
}

ApiForm apiFormOf(const QJsonObject &request)
{
    return request[u"api_version"].toInt(1) >= 2 ? ApiForm::Newer : ApiForm::Classic;
}

LedgerMessages::LedgerMessages(LedgerSource source, LedgerSchedule schedule)
    : m_source(source), m_schedule(schedule)
{
}

QJsonObject LedgerMessages::subscribed(LedgerRange validated) const
{
    QJsonObject result = closed(m_source.ledger(validated.last), validated);
    result.remove(u"type");
    result.remove(u"txn_count");
    return result;
}

QJsonObject LedgerMessages::closed(const Ledger &ledger, LedgerRange validated) const
{
    static const QJsonObject recorded = Recordings::ledgerClosed();
    QJsonObject message = recorded;
    message[u"ledger_hash"] = ledger.hash;
    message[u"ledger_index"] = jsonIndex(ledger.index);
    message[u"ledger_time"] = DateText::ledgerTime(m_schedule.closeOf(ledger.index));
    message[u"txn_count"] = static_cast<qint64>(ledger.transactions.size());
    message[u"validated_ledgers"] = validated.text();
    return message;
}

QJsonObject LedgerMessages::transaction(const Ledger &ledger, std::size_t position,
                                        ApiForm form) const
{
    const LedgerTransaction &transaction = ledger.transactions.at(position);
    const Recordings::TransactionMessage &recorded =
        Recordings::transactions().at(transaction.recording);
    const WallTime close = m_schedule.closeOf(ledger.index);
    const bool newer = form == ApiForm::Newer;

    QJsonObject message = newer ? recorded.newer : recorded.classic;
    message[u"close_time_iso"] = DateText::iso(close);
    message[u"ledger_hash"] = ledger.hash;
    message[u"ledger_index"] = jsonIndex(ledger.index);

    QJsonObject meta = message[u"meta"].toObject();
    meta[u"TransactionIndex"] = static_cast<qint64>(position);
    message[u"meta"] = meta;

    const QString member = newer ? QStringLiteral("tx_json") : QStringLiteral("transaction");
    QJsonObject content = message[member].toObject();
    content[u"Sequence"] = jsonIndex(transaction.sequence);
    content[u"date"] = DateText::ledgerTime(close);
    if (newer)
        message[u"hash"] = transaction.hash;
    else
        content[u"hash"] = transaction.hash;
    message[member] = content;
    return message;
}

QJsonObject LedgerMessages::describe(quint32 index, const QJsonObject &request) const
{
    static const QJsonObject recorded = Recordings::ledgerResult();
    const Ledger ledger = m_source.ledger(index);
    const WallTime close = m_schedule.closeOf(index);

    QJsonObject object = recorded[u"ledger"].toObject();
    object[u"account_hash"] = ledger.accountHash;
    object[u"close_time"] = DateText::ledgerTime(close);
    object[u"close_time_human"] =
        DateText::human(std::chrono::floor<std::chrono::seconds>(close), 9);
    object[u"close_time_iso"] = DateText::iso(close);
    object[u"ledger_hash"] = ledger.hash;
    object[u"ledger_index"] = indexValue(index, apiFormOf(request));
    object[u"parent_close_time"] = DateText::ledgerTime(m_schedule.closeOf(index - 1));
    object[u"parent_hash"] = ledger.parentHash;
    object[u"total_coins"] = ledger.totalCoins;
    object[u"transaction_hash"] = ledger.transactionHash;
    if (request[u"transactions"].toBool())
        object[u"transactions"] = hashes(ledger);
    else
        object.remove(u"transactions");

    QJsonObject result = recorded;
    result[u"ledger"] = object;
    result[u"ledger_hash"] = ledger.hash;
    result[u"ledger_index"] = jsonIndex(index);
    return result;
}

Reply LedgerMessages::answer(const QJsonObject &request, std::optional<LedgerRange> validated) const
{
    if (!validated)
        return RpcErrors::ledgerNotFound;
    const auto index = requestedIndex(request[u"ledger_index"], *validated);
    if (!index)
        return RpcErrors::ledgerIndexMalformed;
    if (*index == validated->last + 1)
        return describeOpen(*index, m_source.ledger(validated->last).hash, request);
    if (*index < validated->first || *index > validated->last)
        return RpcErrors::ledgerNotFound;
    return describe(*index, request);
}

} // namespace tidewick::sim
