// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QByteArray>
#include <QByteArrayView>

#include <memory>
#include <string>

namespace tidewick {

/// Reads one HTTP/1 response from bytes as they arrive, and holds no more of it than its limits
/// say, whatever is sent: the sender is not trusted.
class HttpResponseReader
{
public:
    /// In bytes, for the status line, for the headers together, and for what stands between and
    /// after chunks.
    static constexpr quint32 largestHeader = 64 * 1024;

    /// Responses before the real one that only say that it is to come; servers send one at most.
    static constexpr int mostInterim = 8;

    enum class State {
        Incomplete, ///< more bytes are wanted
        Complete,   ///< the body is there whole
        Broken,     ///< no HTTP, cut short, or beyond a limit
    };

    /// A body of more bytes than this breaks the response, as soon as that is announced or seen.
    explicit HttpResponseReader(quint64 largestBody);
    HttpResponseReader(const HttpResponseReader &) = delete;
    HttpResponseReader &operator=(const HttpResponseReader &) = delete;
    ~HttpResponseReader();

    /// Takes the next bytes. What follows a complete response is passed over.
    State take(QByteArrayView bytes);

    /// Takes the end of the connection, which completes a response that does not tell its length.
    State end();

    /// The body of a complete response, whatever its status. To be asked for once.
    std::string takeBody();

private:
    class Parser;

    State read();

    const quint64 m_largestBody;
    State m_state = State::Incomplete;
    int m_interim = 0;
    std::unique_ptr<Parser> m_parser;
    /// What the parser wants to see again together with what comes next.
    QByteArray m_unread;
};

} // namespace tidewick
