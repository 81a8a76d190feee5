// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "feed/PlainReading.h"

#include "platform/JsonRead.h"
#include "platform/NumberText.h"

#include <QJsonArray>
#include <QStringList>

#include <algorithm>

namespace tidewick {

namespace {

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
        return SubscribedMessage{JsonRead::integer(result[u"ledger_index"])};
    if (id < 1000 || !result[u"ledger"].isObject())
        return {};
    const QJsonObject ledger = result[u"ledger"].toObject();
    const QJsonValue indexValue = ledger[u"ledger_index"];
    const auto digits = shortText(indexValue);
    const auto index = digits ? NumberText::integer(*digits) : JsonRead::integer(indexValue);
    const auto closed = time(ledger[u"close_time"]);
    if (!index || !closed || !ledger[u"transactions"].isArray())
        return {};
    return BackfillMessage{{*index, ledger[u"transactions"].toArray().size(), *closed}};
}

StreamMessage transactionOf(const QJsonObject &message)
{
    QJsonObject body = message[u"transaction"].toObject();
    if (message[u"tx_json"].isObject())
        body = message[u"tx_json"].toObject();
    auto hash = shortText(message[u"hash"]);
    if (!hash)
        hash = shortText(body[u"hash"]);
    if (!hash)
        return {};
    auto result = shortText(message[u"meta"][u"TransactionResult"]);
    if (!result)
        result = shortText(message[u"engine_result"]);
    LedgerFeed::Tx tx;
    tx.id = *hash;
    tx.type = shortText(body[u"TransactionType"]).value_or(QStringLiteral("Unknown"));
    tx.account = shortText(body[u"Account"]).value_or(QString());
    tx.result = result.value_or(QString());
    tx.ledger = JsonRead::integer(message[u"ledger_index"]).value_or(0);
    return TransactionMessage{tx};
}

StreamMessage messageOf(const QJsonObject &message)
{
    const auto id = JsonRead::integer(message[u"id"]);
    if (id && message[u"result"].isObject())
        return responseOf(*id, message[u"result"].toObject());
    const QString type = message[u"type"].toString();
    if (type == u"transaction")
        return transactionOf(message);
    const auto index = JsonRead::integer(message[u"ledger_index"]);
    const auto closed = time(message[u"ledger_time"]);
    if (type != u"ledgerClosed" || !index || !closed)
        return {};
    const qint64 count = JsonRead::integer(message[u"txn_count"]).value_or(0);
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
