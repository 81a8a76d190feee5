// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include "platform/files/Files.h"

#include <QByteArray>
#include <QMap>

#include <chrono>
#include <functional>
#include <optional>

namespace tidewick {

/// An HTTP answer in its parts. Header names are lower-case.
struct HttpAnswer
{
    int status = 0;
    QMap<QByteArray, QByteArray> headers;
    QByteArray body;

    /// The answer at the beginning of these bytes; nothing while its head is not complete.
    static std::optional<HttpAnswer> read(const QByteArray &bytes);
};

/// A client on a bare socket, which sees what the other end really does. Blocks.
class RawClient
{
public:
    enum class State { Refused, Open, Closed, Reset };

    static constexpr std::chrono::seconds patience{10};

    /// Connects to a port on loopback.
    explicit RawClient(quint16 port);

    State state() const { return m_state; }

    void send(const QByteArray &bytes);

    /// A call of this method over HTTP, with more header lines, each with its line end.
    static QByteArray request(const QByteArray &method, const QByteArray &headers = {});
    /// Sends one.
    void call(const QByteArray &method, const QByteArray &headers = {})
    {
        send(request(method, headers));
    }

    /// Reads until there is enough, the other end has closed, or the time is up; gives all that was
    /// read since the last time.
    QByteArray read(const std::function<bool(const QByteArray &)> &enough,
                    std::chrono::milliseconds limit = patience);

    /// Reads one whole HTTP answer whose length is announced.
    HttpAnswer readAnswer();

    /// Reads until the other end has closed and gives the number of bytes.
    qint64 readAway();

private:
    std::optional<QByteArray> readSome(std::chrono::milliseconds limit);

    UniqueDescriptor m_socket;
    State m_state = State::Refused;
};

} // namespace tidewick
