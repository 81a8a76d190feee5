// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QByteArray>
#include <QByteArrayList>

#include <optional>

namespace tidewick::sim {

/// The parts of a request that this server uses.
struct HttpRequest
{
    QByteArray method;
    QByteArray body;
    /// The client's cookies; empty if there are none.
    QByteArray cookie;
    /// The connection stays open after the answer.
    bool keepAlive;
};

/// The result of reading the beginning of a client's input.
struct HttpInput
{
    enum class State { Incomplete, Complete, Malformed, TooLarge };

    static constexpr qsizetype largestHead = 16LL * 1024;
    static constexpr qsizetype largestBody = 1024LL * 1024;

    State state;
    /// Only for a complete request: its length in bytes, and the request.
    qsizetype length = 0;
    HttpRequest request{};

    /// Reads a request from the beginning of these bytes. More than `largestHead` and
    /// `largestBody` together are never needed.
    static HttpInput read(const QByteArray &bytes);
};

/// The response to a request.
struct HttpResponse
{
    int status = 200;
    QByteArray contentType = "application/json; charset=UTF-8";
    /// Complete lines such as "Location: /", without line endings.
    QByteArrayList extraHeaders;
    QByteArray body;

    /// The status line and the headers, including the empty line. Announces a body of this length,
    /// or a chunked one.
    QByteArray head(std::optional<qint64> contentLength) const;
};

} // namespace tidewick::sim
