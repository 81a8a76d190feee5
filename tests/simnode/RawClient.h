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

/// The parts of an HTTP response. Header names are in lower case.
struct HttpAnswer
{
    int status = 0;
    QMap<QByteArray, QByteArray> headers;
    QByteArray body;

    /// The response at the start of these bytes; nothing while its head is incomplete.
    static std::optional<HttpAnswer> read(const QByteArray &bytes);
};

/// A client on a plain socket, which sees exactly what the other end does. Its calls block.
class RawClient
{
public:
    enum class State { Refused, Open, Closed, Reset };

    static constexpr std::chrono::seconds patience{10};

    /// Connects to a loopback port.
    explicit RawClient(quint16 port);

    State state() const { return m_state; }

    void send(const QByteArray &bytes);

    /// An HTTP request for this method. Each extra header line includes its line end.
    static QByteArray request(const QByteArray &method, const QByteArray &headers = {});
    /// Sends such a request.
    void call(const QByteArray &method, const QByteArray &headers = {})
    {
        send(request(method, headers));
    }

    /// Reads until there is enough, the other end has closed, or the time is up. Returns everything
    /// read since the last call.
    QByteArray read(const std::function<bool(const QByteArray &)> &enough,
                    std::chrono::milliseconds limit = patience);

    /// Reads one complete HTTP response with a Content-Length.
    HttpAnswer readAnswer();

    /// Reads until the other end has closed and returns the number of bytes read.
    qint64 readAway();

private:
    std::optional<QByteArray> readSome(std::chrono::milliseconds limit);

    UniqueDescriptor m_socket;
    State m_state = State::Refused;
};

} // namespace tidewick
