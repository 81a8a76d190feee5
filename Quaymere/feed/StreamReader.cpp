// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "feed/StreamReader.h"

#include "platform/json/JsonRead.h"
#include "platform/text/NumberText.h"

#include <QJsonArray>
#include <QStringEncoder>

#include <array>
#include <cmath>

#include <simdjson.h>

namespace tidewick {

namespace {

/// The epoch of the node's times, 2000-01-01 00:00:00 UTC, in Unix time.
constexpr double ledgerEpoch = 946684800;

/// In bytes. The longest texts of interest in the ledger are hashes, with 64.
constexpr std::size_t longestText = 128;

/// In bytes. The buffers are many times as large as a message; those for a longer one are not kept.
constexpr std::size_t usualMessage = 1024UL * 1024;

using namespace std::string_view_literals;

template <std::size_t N>
using Names = std::array<std::string_view, N>;

// The values of the two parsers are read by functions with the same names: first those for
// simdjson, which is fast, then those for Qt.

using FastObject = simdjson::dom::object;
using FastValue = std::optional<simdjson::dom::element>;

/// The values of these members. If several members have the same name, the last one counts.
template <std::size_t N>
std::array<FastValue, N> members(const FastObject &object, const Names<N> &names)
{
    std::array<FastValue, N> values;
    for (const auto field : object)
        for (std::size_t i = 0; i < N; ++i)
            if (field.key == names[i])
                values[i] = field.value;
    return values;
}

template <typename T>
std::optional<T> as(const FastValue &value)
{
    T content{};
    if (!value || value->get(content) != simdjson::SUCCESS)
        return std::nullopt;
    return content;
}

std::optional<FastObject> object(const FastValue &value)
{
    return as<FastObject>(value);
}

std::optional<qint64> elements(const FastValue &value)
{
    const auto array = as<simdjson::dom::array>(value);
    if (!array)
        return std::nullopt;
    return std::distance(array->begin(), array->end());
}

std::optional<QString> text(const FastValue &value)
{
    const auto utf8 = as<std::string_view>(value);
    if (!utf8 || utf8->size() > longestText)
        return std::nullopt;
    return QString::fromUtf8(utf8->data(), qsizetype(utf8->size()));
}

std::optional<double> number(const FastValue &value)
{
    if (const auto truth = as<bool>(value))
        return *truth ? 1.0 : 0.0;
    return as<double>(value);
}

std::optional<qint64> integer(const FastValue &value)
{
    if (const auto whole = as<std::int64_t>(value))
        return *whole;
    const auto figure = number(value);
    // 2^63 is the first value that does not fit.
    constexpr double limit = 9223372036854775808.0;
    if (!figure || *figure != std::trunc(*figure) || *figure < -limit || *figure >= limit)
        return std::nullopt;
    return qint64(*figure);
}

template <std::size_t N>
std::array<QJsonValue, N> members(const QJsonObject &object, const Names<N> &names)
{
    std::array<QJsonValue, N> values;
    for (std::size_t i = 0; i < N; ++i)
        values[i] =
            JsonRead::member(object, QLatin1String(names[i].data(), qsizetype(names[i].size())));
    return values;
}

using JsonRead::integer;
using JsonRead::number;
using JsonRead::object;

std::optional<qint64> elements(const QJsonValue &value)
{
    return value.isArray() ? std::optional<qint64>(value.toArray().size()) : std::nullopt;
}

std::optional<QString> text(const QJsonValue &value)
{
    auto content = JsonRead::string(value);
    if (content && std::size_t(content->toUtf8().size()) > longestText)
        content.reset();
    return content;
}

/// The index of a past ledger is a text or a number, depending on the node's version.
template <typename Value>
std::optional<qint64> integerInAnyForm(const Value &value)
{
    if (const auto digits = text(value))
        return NumberText::integer(*digits);
    return integer(value);
}

template <typename Value>
std::optional<LedgerFeed::Time> time(const Value &value)
{
    const auto seconds = number(value);
    if (!seconds)
        return std::nullopt;
    return LedgerFeed::Time(LedgerFeed::Time::duration(*seconds + ledgerEpoch));
}

template <typename Object>
StreamMessage readPastLedger(const Object &ledger)
{
    const auto [indexValue, transactionsValue, timeValue] =
        members(ledger, std::array{"ledger_index"sv, "transactions"sv, "close_time"sv});
    const auto index = integerInAnyForm(indexValue);
    const auto transactions = elements(transactionsValue);
    const auto closed = time(timeValue);
    // The open ledger has no close time.
    if (!index || !transactions || !closed)
        return {};
    return BackfillMessage{{*index, *transactions, *closed}};
}

template <typename Object>
StreamMessage readResponse(qint64 id, const Object &result)
{
    const auto [index, ledger] = members(result, std::array{"ledger_index"sv, "ledger"sv});
    if (id == StreamReader::subscriptionId)
        return SubscribedMessage{integer(index)};
    if (const auto past = object(ledger); past && id >= StreamReader::firstBackfillId)
        return readPastLedger(*past);
    return {};
}

template <typename Object>
StreamMessage readClosedLedger(const Object &message)
{
    const auto [indexValue, count, timeValue] =
        members(message, std::array{"ledger_index"sv, "txn_count"sv, "ledger_time"sv});
    const auto index = integer(indexValue);
    const auto closed = time(timeValue);
    if (!index || !closed)
        return {};
    return LedgerClosedMessage{{*index, std::max<qint64>(0, integer(count).value_or(0)), *closed}};
}

template <typename Object>
StreamMessage readTransaction(const Object &message)
{
    const auto [newForm, oldForm, outerHash, ledger, metaValue, engineResult] =
        members(message, std::array{"tx_json"sv, "transaction"sv, "hash"sv, "ledger_index"sv,
                                    "meta"sv, "engine_result"sv});

    LedgerFeed::Tx tx;
    std::optional<QString> hash = text(outerHash);
    std::optional<QString> type;
    auto body = object(newForm);
    if (!body)
        body = object(oldForm);
    if (body) {
        const auto [innerHash, typeValue, account] =
            members(*body, std::array{"hash"sv, "TransactionType"sv, "Account"sv});
        if (!hash)
            hash = text(innerHash);
        type = text(typeValue);
        tx.account = text(account).value_or(QString());
    }
    if (!hash)
        return {};

    std::optional<QString> result;
    if (const auto meta = object(metaValue))
        result = text(members(*meta, std::array{"TransactionResult"sv})[0]);
    if (!result)
        result = text(engineResult);

    tx.id = *hash;
    tx.type = type.value_or(QStringLiteral("Unknown"));
    tx.result = result.value_or(QString());
    tx.ledger = integer(ledger).value_or(0);
    return TransactionMessage{std::move(tx)};
}

template <typename Object>
StreamMessage readMessage(const Object &message)
{
    const auto [idValue, resultValue, type] =
        members(message, std::array{"id"sv, "result"sv, "type"sv});
    const auto id = integer(idValue);
    const auto result = object(resultValue);
    if (id && result)
        return readResponse(*id, *result);
    const auto kind = text(type);
    if (kind == u"transaction")
        return readTransaction(message);
    if (kind == u"ledgerClosed")
        return readClosedLedger(message);
    return {};
}

} // namespace

/// The parser and the bytes that its last document refers to.
struct StreamReader::Parser
{
    simdjson::dom::parser json;
    QByteArray bytes;

    StreamMessage read(QStringView message)
    {
        QStringEncoder encode(QStringEncoder::Utf8);
        bytes.resize(encode.requiredSpace(message.size()) + qsizetype(simdjson::SIMDJSON_PADDING));
        const qsizetype length = encode.appendToBuffer(bytes.data(), message) - bytes.data();
        FastObject object;
        if (json.parse(bytes.constData(), std::size_t(length), false).get(object)
            == simdjson::SUCCESS)
            return readMessage(object);

        // Qt reads some messages that simdjson refuses, such as those with integers beyond 64 bits.
        // If the message is large, simdjson's memory is freed first, because the two parsers
        // together would use the most.
        if (json.capacity() > usualMessage)
            json = simdjson::dom::parser();
        const auto slowObject =
            JsonRead::parseObject(QByteArray::fromRawData(bytes.constData(), length));
        return slowObject ? readMessage(*slowObject) : StreamMessage();
    }
};

StreamReader::StreamReader() : m_parser(std::make_unique<Parser>()) {}

StreamReader::~StreamReader() = default;

StreamMessage StreamReader::read(QStringView text)
{
    StreamMessage message = m_parser->read(text);
    if (m_parser->json.capacity() > usualMessage
        || std::size_t(m_parser->bytes.size()) > 3 * usualMessage)
        m_parser = std::make_unique<Parser>();
    return message;
}

} // namespace tidewick
