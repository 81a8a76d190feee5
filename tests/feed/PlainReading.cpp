// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "feed/PlainReading.h"

#include "platform/json/JsonRead.h"
#include "platform/text/NumberText.h"

#include <QJsonArray>
#include <QStringList>

#include <algorithm>

namespace tidewick {

namespace {

QJsonValue at(const QJsonObject &object, const char *name)
{
    return JsonRead::member(object, QLatin1String(name));
}

std::optional<QString> shortText(const QJsonValue &value)
{
    const auto text = JsonRead::string(value);
    return text && text->toUtf8().size() <= 128 ? text : std::nullopt;
}

std::optional<LedgerFeed::Time> time(const QJsonValue &value)
{
    const auto seconds = JsonRead::number(value);
    if (!seconds)
        return std::nullopt;
    return LedgerFeed::Time(LedgerFeed::Time::duration(946684800 + *seconds));
}

StreamMessage responseOf(qint64 id, const QJsonObject &result)
{
    if (id == 1)
        return SubscribedMessage{JsonRead::integer(at(result, "ledger_index"))};
    if (id < 1000 || !at(result, "ledger").isObject())
        return {};
    const QJsonObject ledger = at(result, "ledger").toObject();
    const QJsonValue indexValue = at(ledger, "ledger_index");
    const auto digits = shortText(indexValue);
    const auto index = digits ? NumberText::integer(*digits) : JsonRead::integer(indexValue);
    const auto closed = time(at(ledger, "close_time"));
    if (!index || !closed || !at(ledger, "transactions").isArray())
        return {};
    return BackfillMessage{{*index, at(ledger, "transactions").toArray().size(), *closed}};
}

StreamMessage transactionOf(const QJsonObject &message)
{
    QJsonObject body = at(message, "transaction").toObject();
    if (at(message, "tx_json").isObject())
        body = at(message, "tx_json").toObject();
    auto hash = shortText(at(message, "hash"));
    if (!hash)
        hash = shortText(at(body, "hash"));
    if (!hash)
        return {};
    auto result = shortText(at(at(message, "meta").toObject(), "TransactionResult"));
    if (!result)
        result = shortText(at(message, "engine_result"));
    LedgerFeed::Tx tx;
    tx.id = *hash;
    tx.type = shortText(at(body, "TransactionType")).value_or(QStringLiteral("Unknown"));
    tx.account = shortText(at(body, "Account")).value_or(QString());
    tx.result = result.value_or(QString());
    tx.ledger = JsonRead::integer(at(message, "ledger_index")).value_or(0);
    return TransactionMessage{tx};
}

StreamMessage messageOf(const QJsonObject &message)
{
    const auto id = JsonRead::integer(at(message, "id"));
    if (id && at(message, "result").isObject())
        return responseOf(*id, at(message, "result").toObject());
    const QString type = at(message, "type").toString();
    if (type == u"transaction")
        return transactionOf(message);
    const auto index = JsonRead::integer(at(message, "ledger_index"));
    const auto closed = time(at(message, "ledger_time"));
    if (type != u"ledgerClosed" || !index || !closed)
        return {};
    const qint64 count = JsonRead::integer(at(message, "txn_count")).value_or(0);
    return LedgerClosedMessage{{*index, std::max<qint64>(count, 0), *closed}};
}

QString ledgerText(const char *kind, const LedgerFeed::Ledger &ledger)
{
    return QStringLiteral("%1: %2, %3 transactions, at %4")
        .arg(QLatin1String(kind))
        .arg(ledger.id)
        .arg(ledger.txns)
        .arg(ledger.closed.time_since_epoch().count(), 0, 'g', 17);
}

} // namespace

QString described(const StreamMessage &message)
{
    if (const auto *subscribed = std::get_if<SubscribedMessage>(&message)) {
        const auto index = subscribed->ledgerIndex;
        return QStringLiteral("subscribed: ")
               + (index ? QString::number(*index) : QStringLiteral("none"));
    }
    if (const auto *past = std::get_if<BackfillMessage>(&message))
        return ledgerText("past", past->ledger);
    if (const auto *closed = std::get_if<LedgerClosedMessage>(&message))
        return ledgerText("closed", closed->ledger);
    if (const auto *transaction = std::get_if<TransactionMessage>(&message)) {
        const LedgerFeed::Tx &tx = transaction->tx;
        return QStringList{QStringLiteral("transaction"), tx.id, tx.type, tx.account, tx.result,
                           QString::number(tx.ledger)}
            .join(u'|');
    }
    return QStringLiteral("nothing");
}

PlainReading PlainReading::of(const QString &text)
{
    const auto message = JsonRead::parseObject(text.toUtf8());
    if (!message)
        return {false, described({})};
    return {true, described(messageOf(*message))};
}

} // namespace tidewick
