// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "RawClient.h"

#include <QByteArrayList>

#include <algorithm>
#include <array>
#include <cerrno>

#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>

namespace tidewick {

using Clock = std::chrono::steady_clock;

std::optional<HttpAnswer> HttpAnswer::read(const QByteArray &bytes)
{
    const qsizetype headLength = bytes.indexOf("\r\n\r\n");
    if (headLength < 0)
        return std::nullopt;
    HttpAnswer answer;
    QByteArrayList lines = bytes.left(headLength).replace("\r\n", "\n").split('\n');
    answer.status = lines.takeFirst().split(' ').value(1).toInt();
    for (const QByteArray &line : lines) {
        const qsizetype colon = line.indexOf(':');
        answer.headers[line.left(colon).toLower()] = line.mid(colon + 1).trimmed();
    }
    answer.body = bytes.mid(headLength + 4);
    return answer;
}

RawClient::RawClient(quint16 port) : m_socket(::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0))
{
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_port = htons(port);
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    const auto *generic = reinterpret_cast<const sockaddr *>(&address);
    if (::connect(m_socket.get(), generic, sizeof address) == 0)
        m_state = State::Open;
}

void RawClient::send(const QByteArray &bytes)
{
    if (::send(m_socket.get(), bytes.constData(), static_cast<std::size_t>(bytes.size()),
               MSG_NOSIGNAL)
        != bytes.size())
        m_state = State::Closed;
}

QByteArray RawClient::request(const QByteArray &method, const QByteArray &headers)
{
    const QByteArray body = R"({"method":")" + method + R"(","params":[{}]})";
    return "POST / HTTP/1.1\r\nHost: 127.0.0.1\r\nContent-Length: "
           + QByteArray::number(body.size()) + "\r\n" + headers + "\r\n" + body;
}

/// The next bytes, if any arrive within the limit while the connection is open.
std::optional<QByteArray> RawClient::readSome(std::chrono::milliseconds limit)
{
    pollfd entry{m_socket.get(), POLLIN, 0};
    const auto timeout = static_cast<int>(std::max(limit, std::chrono::milliseconds(0)).count());
    if (m_state != State::Open || ::poll(&entry, 1, timeout) <= 0)
        return std::nullopt;
    std::array<char, 65536> buffer{};
    const ssize_t count = ::recv(m_socket.get(), buffer.data(), buffer.size(), 0);
    if (count > 0)
        return QByteArray(buffer.data(), count);
    m_state = count == 0 ? State::Closed : State::Reset;
    return std::nullopt;
}

QByteArray RawClient::read(const std::function<bool(const QByteArray &)> &enough,
                           std::chrono::milliseconds limit)
{
    const Clock::time_point deadline = Clock::now() + limit;
    QByteArray bytes;
    while (!enough(bytes)) {
        const auto left = std::chrono::ceil<std::chrono::milliseconds>(deadline - Clock::now());
        const auto more = readSome(left);
        if (!more)
            break;
        bytes += *more;
    }
    return bytes;
}

HttpAnswer RawClient::readAnswer()
{
    const QByteArray bytes = read([](const QByteArray &sofar) {
        const auto answer = HttpAnswer::read(sofar);
        return answer && answer->body.size() >= answer->headers["content-length"].toLongLong();
    });
    return HttpAnswer::read(bytes).value_or(HttpAnswer());
}

qint64 RawClient::readAway()
{
    qint64 count = 0;
    while (const auto more = readSome(patience))
        count += more->size();
    return count;
}

} // namespace tidewick
