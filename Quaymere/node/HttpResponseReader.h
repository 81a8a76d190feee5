// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QByteArray>
#include <QByteArrayView>

#include <memory>
#include <string>

namespace tidewick {

/// Reads one HTTP/1 response from bytes as they arrive. The sender is not trusted: memory use stays
/// within the limits, whatever it sends.
class HttpResponseReader
{
public:
    /// Limit in bytes for the status line, for all headers together, and for the data between and
    /// after chunks.
    static constexpr quint32 largestHeader = 64 * 1024;

    /// The number of interim responses accepted before the real one; servers send one at most.
    static constexpr int mostInterim = 8;

    enum class State {
        Incomplete, ///< more bytes are needed
        Complete,   ///< the body has arrived completely
        Broken,     ///< not HTTP, cut short, or beyond a limit
    };

    /// A body of more bytes than this makes the response Broken, as soon as its size is announced
    /// or exceeded.
    explicit HttpResponseReader(quint64 largestBody);
    HttpResponseReader(const HttpResponseReader &) = delete;
    HttpResponseReader &operator=(const HttpResponseReader &) = delete;
    ~HttpResponseReader();

    /// Processes the next bytes. Ignores any that follow a complete response.
    State take(QByteArrayView bytes);

    /// Processes the end of the connection, which completes a response that does not state its
    /// length.
    State end();

    /// Moves out the body of a complete response, whatever its status. Call it only once.
    std::string takeBody();

private:
    class Parser;

    State read();

    const quint64 m_largestBody;
    State m_state = State::Incomplete;
    int m_interim = 0;
    std::unique_ptr<Parser> m_parser;
    /// Bytes that the parser needs again, together with those that follow.
    QByteArray m_unread;
};

} // namespace tidewick
