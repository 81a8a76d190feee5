// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

// The parser of Boost 1.74 asserts that five bytes are available when only three or four of
// "0\r\n\r\n" are, and then continues correctly.
#define BOOST_DISABLE_ASSERTS

#include "node/HttpResponseReader.h"

#include <utility>

#include <boost/asio/buffer.hpp>
#include <boost/beast/http/error.hpp>
#include <boost/beast/http/parser.hpp>
#include <boost/beast/http/string_body.hpp>

namespace tidewick {

namespace {

namespace http = boost::beast::http;

/// Whether a response only announces that the real one is still to come. 101 does not: the data
/// that follows it is no longer HTTP.
bool isInterim(unsigned status)
{
    return status / 100 == 1 && status != 101;
}

} // namespace

class HttpResponseReader::Parser : public http::response_parser<http::string_body>
{
public:
    explicit Parser(quint64 largestBody)
    {
        // Stops the parser after each part. If it continues by itself, it forgets that the
        // announced length was too large (Boost 1.74).
        eager(false);
        header_limit(largestHeader);
        body_limit(largestBody);
    }
};

HttpResponseReader::HttpResponseReader(quint64 largestBody)
    : m_largestBody(largestBody), m_parser(std::make_unique<Parser>(largestBody))
{
}

HttpResponseReader::~HttpResponseReader() = default;

HttpResponseReader::State HttpResponseReader::take(QByteArrayView bytes)
{
    if (m_state != State::Incomplete)
        return m_state;
    m_unread.append(bytes);
    return m_state = read();
}

HttpResponseReader::State HttpResponseReader::read()
{
    while (!m_unread.isEmpty()) {
        boost::system::error_code error;
        const std::size_t size = m_parser->put(
            boost::asio::const_buffer(m_unread.constData(), static_cast<size_t>(m_unread.size())),
            error);
        m_unread.remove(0, static_cast<qsizetype>(size));
        if (error && error != http::error::need_more)
            return State::Broken;
        if (m_parser->is_done()) {
            if (!isInterim(m_parser->get().result_int()))
                return State::Complete;
            if (++m_interim > mostInterim)
                return State::Broken;
            m_parser = std::make_unique<Parser>(m_largestBody);
        } else if (error) {
            // The parser limits the header itself, but neither the lines between chunks nor the
            // trailers.
            return m_unread.size() > largestHeader ? State::Broken : State::Incomplete;
        }
    }
    return State::Incomplete;
}

HttpResponseReader::State HttpResponseReader::end()
{
    if (m_state == State::Incomplete) {
        boost::system::error_code error;
        if (m_parser->got_some())
            m_parser->put_eof(error);
        m_state = !error && m_parser->is_done() ? State::Complete : State::Broken;
    }
    return m_state;
}

std::string HttpResponseReader::takeBody()
{
    return std::move(m_parser->get().body());
}

} // namespace tidewick
