// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "simnode/Transmission.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QtEndian>

#include <algorithm>
#include <array>

namespace tidewick::sim {

namespace {

constexpr qint64 hugeLength = 200'000'000;
constexpr int depth = 5000;

/// Answers that do not depend on the request; those with status 200 claim to be JSON.
struct FixedAnswer
{
    RpcFault fault;
    int status;
    const char *body;
};

constexpr auto fixedAnswers = std::to_array<FixedAnswer>({
    {RpcFault::Garbage, 200, "\x01\xFE{]not JSON at all"},
    {RpcFault::Array, 200, R"([{"result":{"status":"success"}}])"},
    {RpcFault::ArrayResult, 200, R"({"result":["status","success"]})"},
    {RpcFault::StringResult, 200, R"({"result":"success"})"},
    {RpcFault::NoResult, 200, "{}"},
    {RpcFault::Error, 200, R"({"result":{"error":"internal","error_code":73,"status":"error"}})"},
    {RpcFault::Status400, 400, "no such luck\r\n"},
    {RpcFault::Status403, 403, "not for you\r\n"},
    {RpcFault::Status503, 503, "too busy\r\n"},
    {RpcFault::Unauthorized, 401, "who are you?\r\n"},
    {RpcFault::Redirect, 302, "not here\r\n"},
});

HttpResponse fixedAnswer(RpcFault fault)
{
    const auto *answer =
        std::find_if(fixedAnswers.begin(), fixedAnswers.end(),
                     [fault](const FixedAnswer &known) { return known.fault == fault; });
    HttpResponse response;
    response.status = answer->status;
    response.body = answer->body;
    if (answer->status != 200)
        response.contentType = "text/plain; charset=UTF-8";
    return response;
}

HttpResponse deepAnswer()
{
    HttpResponse response;
    response.body = R"({"result":)" + QByteArray(depth, '[') + QByteArray(depth, ']') + '}';
    return response;
}

Transmission delivered(const HttpResponse &usual, Delivery delivery)
{
    return {usual, delivery, 0, true};
}

Transmission filler(Delivery delivery)
{
    return {{}, delivery, hugeLength, true};
}

Transmission withStatus(int status, HttpResponse usual)
{
    usual.status = status;
    return {usual};
}

Transmission withHeader(const QByteArray &header, HttpResponse usual)
{
    usual.extraHeaders.append(header);
    return {usual};
}

/// Objects keep their structure; every other value is replaced by one of a different type.
QJsonValue wronglyTyped(const QJsonValue &value)
{
    switch (value.type()) {
    case QJsonValue::Object: {
        QJsonObject object = value.toObject();
        for (auto member = object.begin(); member != object.end(); ++member)
            member.value() = wronglyTyped(member.value());
        return object;
    }
    case QJsonValue::Double:
        return QJsonArray{QStringLiteral("not a number")};
    case QJsonValue::String:
        return 7;
    case QJsonValue::Array:
        return QStringLiteral("not an array");
    default:
        return QJsonObject();
    }
}

Transmission withWrongTypes(HttpResponse usual)
{
    const QJsonValue document = QJsonDocument::fromJson(usual.body).object();
    usual.body = QJsonDocument(wronglyTyped(document).toObject()).toJson(QJsonDocument::Compact);
    return {usual};
}

/// The checksum in the trailer of the gzip format.
quint32 crc32(const QByteArray &bytes)
{
    quint32 sum = 0xFFFFFFFF;
    for (const char byte : bytes) {
        sum ^= static_cast<uchar>(byte);
        for (int bit = 0; bit < 8; ++bit)
            sum = (sum >> 1) ^ ((sum & 1) != 0 ? 0xEDB88320 : 0);
    }
    return ~sum;
}

QByteArray littleEndian(quint32 number)
{
    QByteArray bytes(sizeof number, '\0');
    qToLittleEndian(number, bytes.data());
    return bytes;
}

Transmission compressed(HttpResponse usual)
{
    // Qt puts the length (4 bytes) before a zlib stream: a header (2), the data, a checksum (4).
    QByteArray data = qCompress(usual.body);
    data = data.sliced(6, data.size() - 10);
    const auto header = QByteArray::fromHex("1F8B08000000000000FF");
    const auto length = static_cast<quint32>(usual.body.size());
    usual.body = header + data + littleEndian(crc32(usual.body)) + littleEndian(length);
    return withHeader("Content-Encoding: gzip", usual);
}

} // namespace

Transmission transmissionFor(RpcFault fault, const HttpResponse &usual, quint16 redirectPort)
{
    switch (fault) {
    case RpcFault::None:
    case RpcFault::Recorded:
        return {usual};
    case RpcFault::Silent:
    case RpcFault::Unread:
        return delivered({}, Delivery::Never);
    case RpcFault::Status400Json:
        return withStatus(400, usual);
    case RpcFault::Status403Json:
        return withStatus(403, usual);
    case RpcFault::Status503Json:
        return withStatus(503, usual);
    case RpcFault::Unauthorized:
        return withHeader("WWW-Authenticate: Basic realm=\"simulated\"", fixedAnswer(fault));
    case RpcFault::Redirect:
        return withHeader("Location: http://127.0.0.1:" + QByteArray::number(redirectPort) + '/',
                          fixedAnswer(fault));
    case RpcFault::Half:
        return delivered(usual, Delivery::Half);
    case RpcFault::Reset:
        return delivered(usual, Delivery::Reset);
    case RpcFault::Drip:
        return delivered(usual, Delivery::Drip);
    case RpcFault::SlowHeader:
        return delivered(usual, Delivery::SlowHeader);
    case RpcFault::Close:
        return delivered(usual, Delivery::Whole);
    case RpcFault::Huge:
        return filler(Delivery::Filler);
    case RpcFault::HugeChunked:
        return filler(Delivery::ChunkedFiller);
    case RpcFault::HugeHeader:
        return filler(Delivery::HeaderFiller);
    case RpcFault::Gzip:
        return compressed(usual);
    case RpcFault::WrongTypes:
        return withWrongTypes(usual);
    case RpcFault::Cookie:
        return withHeader("Set-Cookie: simulated=1; Path=/", usual);
    case RpcFault::Deep:
        return {deepAnswer()};
    default:
        return {fixedAnswer(fault)};
    }
}

} // namespace tidewick::sim
