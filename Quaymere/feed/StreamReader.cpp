// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "feed/StreamReader.h"

#include "platform/NumberText.h"

#include <QJsonDocument>
#include <QStringEncoder>

#include <array>
#include <cmath>

#include <simdjson.h>

namespace tidewick {

namespace {

using JsonValue = simdjson::dom::element;
using JsonObject = simdjson::dom::object;
using JsonArray = simdjson::dom::array;

/// Of the node's times, which count from 2000-01-01 00:00:00 UTC, in Unix time.
constexpr double ledgerEpoch = 946684800;

/// In bytes. The longest that the ledger has for us are hashes, with 64.
constexpr std::size_t longestText = 128;

/// In bytes. The buffers take many times a message's length; those of a longer one are not kept.
constexpr std::size_t usualMessage = 1024UL * 1024;

/// The values of these members; of members with the same name the last counts.
template <std::size_t N>
std::array<std::optional<JsonValue>, N> members(JsonObject object,
                                                const std::array<std::string_view, N> &names)
{
    std::array<std::optional<JsonValue>, N> values;
    for (const auto field : object)
        for (std::size_t i = 0; i < N; ++i)
            if (field.key == names[i])
                values[i] = field.value;
    return values;
}

template <typename T>
std::optional<T> as(const std::optional<JsonValue> &value)
{
    T content{};
    if (!value || value->get(content) != simdjson::SUCCESS)
        return std::nullopt;
    return content;
}

std::optional<QString> text(const std::optional<JsonValue> &value)
{
    const auto utf8 = as<std::string_view>(value);
    if (!utf8 || utf8->size() > longestText)
        return std::nullopt;
    return QString::fromUtf8(utf8->data(), qsizetype(utf8->size()));
}

std::optional<double> number(const std::optional<JsonValue> &value)
{
    if (const auto truth = as<bool>(value))
        return *truth ? 1.0 : 0.0;
    return as<double>(value);
}

std::optional<qint64> integer(const std::optional<JsonValue> &value)
{
    if (const auto whole = as<std::int64_t>(value))
        return *whole;
    const auto figure = number(value);
    // 2^63 is the first that does not fit.
    constexpr double limit = 9223372036854775808.0;
    if (!figure || *figure != std::trunc(*figure) || *figure < -limit || *figure >= limit)
        return std::nullopt;
    return qint64(*figure);
}

/// The index of a past ledger comes as a text or as a number, depending on the node's version.
std::optional<qint64> integerInAnyForm(const std::optional<JsonValue> &value)
{
    if (const auto digits = text(value))
        return NumberText::integer(*digits);
    return integer(value);
}

std::optional<LedgerFeed::Time> time(const std::optional<JsonValue> &value)
{
    const auto seconds = number(value);
    if (!seconds)
        return std::nullopt;
    return LedgerFeed::Time(LedgerFeed::Time::duration(*seconds + ledgerEpoch));
}

StreamMessage readPastLedger(JsonObject ledger)
{
    const auto [indexValue, transactionsValue, timeValue] =
        members<3>(ledger, {"ledger_index", "transactions", "close_time"});
    const auto index = integerInAnyForm(indexValue);
    const auto transactions = as<JsonArray>(transactionsValue);
    const auto closed = time(timeValue);
    // The open ledger has no closing time.
    if (!index || !transactions || !closed)
        return {};
    const auto count = std::distance(transactions->begin(), transactions->end());
    return BackfillMessage{{*index, count, *closed}};
}

StreamMessage readResponse(qint64 id, JsonObject result)
{
    const auto [index, ledger] = members<2>(result, {"ledger_index", "ledger"});
    if (id == StreamReader::subscriptionId)
        return SubscribedMessage{integer(index)};
    if (const auto past = as<JsonObject>(ledger); past && id >= StreamReader::firstBackfillId)
        return readPastLedger(*past);
    return {};
}

StreamMessage readClosedLedger(JsonObject message)
{
    const auto [indexValue, count, timeValue] =
        members<3>(message, {"ledger_index", "txn_count", "ledger_time"});
    const auto index = integer(indexValue);
    const auto closed = time(timeValue);
    if (!index || !closed)
        return {};
    return LedgerClosedMessage{{*index, std::max<qint64>(0, integer(count).value_or(0)), *closed}};
}

StreamMessage readTransaction(JsonObject message)
{
    const auto [newForm, oldForm, outerHash, ledger, metaValue, engineResult] = members<6>(
        message, {"tx_json", "transaction", "hash", "ledger_index", "meta", "engine_result"});

    LedgerFeed::Tx tx;
    std::optional<QString> hash = text(outerHash);
    std::optional<QString> type;
    auto body = as<JsonObject>(newForm);
    if (!body)
        body = as<JsonObject>(oldForm);
    if (body) {
        const auto [innerHash, typeValue, account] =
            members<3>(*body, {"hash", "TransactionType", "Account"});
        if (!hash)
            hash = text(innerHash);
        type = text(typeValue);
        tx.account = text(account).value_or(QString());
    }
    if (!hash)
        return {};

    std::optional<QString> result;
    if (const auto meta = as<JsonObject>(metaValue))
        result = text(members<1>(*meta, {"TransactionResult"})[0]);
    if (!result)
        result = text(engineResult);

    tx.id = *hash;
    tx.type = type.value_or(QStringLiteral("Unknown"));
    tx.result = result.value_or(QString());
    tx.ledger = integer(ledger).value_or(0);
    return TransactionMessage{std::move(tx)};
}

StreamMessage readMessage(JsonObject message)
{
    const auto [idValue, resultValue, type] = members<3>(message, {"id", "result", "type"});
    const auto id = integer(idValue);
    const auto result = as<JsonObject>(resultValue);
    if (id && result)
        return readResponse(*id, *result);
    const auto kind = as<std::string_view>(type);
    if (kind == "transaction")
        return readTransaction(message);
    if (kind == "ledgerClosed")
        return readClosedLedger(message);
    return {};
}

} // namespace

/// The parser with the bytes that its last document lies in.
struct StreamReader::Parser
{
    simdjson::dom::parser json;
    QByteArray bytes;

    std::optional<JsonObject> parse(QStringView message)
    {
        QStringEncoder encode(QStringEncoder::Utf8);
        bytes.resize(encode.requiredSpace(message.size()) + qsizetype(simdjson::SIMDJSON_PADDING));
        const qsizetype length = encode.appendToBuffer(bytes.data(), message) - bytes.data();
        if (const auto object = parseBytes(length))
            return object;

        // Qt reads some that this parser refuses, integers beyond 64 bits among them, and writes
        // them as it reads them.
        const auto document = QJsonDocument::fromJson(bytes.first(length));
        if (!document.isObject())
            return std::nullopt;
        const QByteArray rewritten = document.toJson(QJsonDocument::Compact);
        bytes = rewritten + QByteArray(qsizetype(simdjson::SIMDJSON_PADDING), ' ');
        return parseBytes(rewritten.size());
    }

private:
    std::optional<JsonObject> parseBytes(qsizetype length)
    {
        JsonObject object;
        const auto error = json.parse(bytes.constData(), std::size_t(length), false).get(object);
        return error == simdjson::SUCCESS ? std::optional(object) : std::nullopt;
    }
};

StreamReader::StreamReader() : m_parser(std::make_unique<Parser>()) {}

StreamReader::~StreamReader() = default;

StreamMessage StreamReader::read(QStringView text)
{
    const auto object = m_parser->parse(text);
    StreamMessage message = object ? readMessage(*object) : StreamMessage();
    if (m_parser->json.capacity() > usualMessage
        || std::size_t(m_parser->bytes.size()) > 3 * usualMessage)
        m_parser = std::make_unique<Parser>();
    return message;
}

} // namespace tidewick
