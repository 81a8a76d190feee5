// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "simnode/HttpMessage.h"

#include "platform/text/NumberText.h"

#include <QHash>

namespace tidewick::sim {

namespace {

const char *reasonOf(int status)
{
    switch (status) {
    case 200:
        return "OK";
    case 302:
        return "Found";
    case 400:
        return "Bad Request";
    case 401:
        return "Unauthorized";
    case 403:
        return "Forbidden";
    case 405:
        return "Method Not Allowed";
    case 413:
        return "Content Too Large";
    default:
        return "Service Unavailable";
    }
}

using Headers = QHash<QByteArray, QByteArray>;

/// The headers by lower-case name, or nothing if a line is not a header.
std::optional<Headers> headersIn(const QByteArrayList &lines)
{
    Headers headers;
    for (const QByteArray &line : lines) {
        const qsizetype colon = line.indexOf(':');
        if (colon <= 0)
            return std::nullopt;
        headers[line.left(colon).trimmed().toLower()] = line.mid(colon + 1).trimmed();
    }
    return headers;
}

HttpInput without(HttpInput::State state)
{
    return {state};
}

} // namespace

HttpInput HttpInput::read(const QByteArray &bytes)
{
    const qsizetype headLength = bytes.indexOf("\r\n\r\n");
    if (headLength < 0 || headLength > largestHead)
        return without(bytes.size() > largestHead ? State::TooLarge : State::Incomplete);

    QByteArrayList lines = bytes.left(headLength).replace("\r\n", "\n").split('\n');
    const QByteArrayList start = lines.takeFirst().split(' ');
    const auto headers = headersIn(lines);
    if (start.size() != 3 || !start[2].startsWith("HTTP/1.") || !headers
        || headers->contains("transfer-encoding"))
        return without(State::Malformed);

    const QByteArray announced = headers->value("content-length", "0");
    const auto bodyLength = NumberText::integer(QString::fromLatin1(announced));
    if (!bodyLength || *bodyLength < 0)
        return without(State::Malformed);
    if (*bodyLength > largestBody)
        return without(State::TooLarge);

    const qsizetype bodyBegin = headLength + 4;
    if (bytes.size() < bodyBegin + *bodyLength)
        return without(State::Incomplete);

    const QByteArray connection = headers->value("connection").toLower();
    const bool keepAlive =
        start[2] == "HTTP/1.0" ? connection == "keep-alive" : connection != "close";
    return {State::Complete,
            bodyBegin + *bodyLength,
            {start[0], bytes.mid(bodyBegin, *bodyLength), headers->value("cookie"), keepAlive}};
}

QByteArray HttpResponse::head(std::optional<qint64> contentLength) const
{
    QByteArray head = "HTTP/1.1 " + QByteArray::number(status) + ' ' + reasonOf(status) + "\r\n"
                      + "Server: simulated-xrpld\r\n" + "Content-Type: " + contentType + "\r\n";
    for (const QByteArray &header : extraHeaders)
        head += header + "\r\n";
    if (contentLength)
        head += "Content-Length: " + QByteArray::number(*contentLength) + "\r\n";
    else
        head += "Transfer-Encoding: chunked\r\n";
    return head + "\r\n";
}

} // namespace tidewick::sim
