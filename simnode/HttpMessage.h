// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QByteArray>
#include <QByteArrayList>

#include <optional>

namespace tidewick::sim {

/// A request read from a connection, as far as this server cares.
struct HttpRequest
{
    QByteArray method;
    QByteArray body;
    /// The client's cookies; empty without any.
    QByteArray cookie;
    /// The connection stays open after the answer.
    bool keepAlive;
};

/// The beginning of what a client has sent.
struct HttpInput
{
    enum class State { Incomplete, Complete, Malformed, TooLarge };

    static constexpr qsizetype largestHead = 16LL * 1024;
    static constexpr qsizetype largestBody = 1024LL * 1024;

    State state;
    /// Of a complete request: its bytes, and itself.
    qsizetype length = 0;
    HttpRequest request{};

    /// Looks for a request at the beginning of these bytes, of which there need be no more than
    /// `largestHead` and `largestBody` together.
    static HttpInput read(const QByteArray &bytes);
};

/// What is sent back for a request.
struct HttpResponse
{
    int status = 200;
    QByteArray contentType = "application/json; charset=UTF-8";
    /// Whole lines such as "Location: /", without line ends.
    QByteArrayList extraHeaders;
    QByteArray body;

    /// The status line and the headers, up to the empty line. Announces a body of so many bytes, or
    /// one in chunks.
    QByteArray head(std::optional<qint64> contentLength) const;
};

} // namespace tidewick::sim
