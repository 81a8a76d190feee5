// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QCoro/QCoroTask>
#include <QJsonObject>
#include <QObject>
#include <QString>

#include <optional>

namespace tidewick {

/// Calls the node's JSON-RPC port on loopback. Each call uses its own connection, so that nothing
/// carries over to the next one. Main thread only. Destroying the object ends pending calls with no
/// result.
class NodeRPC
{
public:
    /// An answer with a body of more bytes than this is dropped as it arrives.
    static constexpr qint64 largestAnswer = qint64{16} * 1024 * 1024;

    explicit NodeRPC(quint16 port) : m_port(port) {}

    /// The "result" object of the answer, whatever its HTTP status and whether or not it reports an
    /// error; redirects are not followed. Nothing if there is no such answer: a refused connection
    /// (reported immediately), 3 s without a byte, 5 s in total, an incomplete body, anything other
    /// than JSON.
    QCoro::Task<std::optional<QJsonObject>> call(QString method);

    /// The "result" object in the body of an answer.
    static std::optional<QJsonObject> resultOf(const QByteArray &body);

private:
    quint16 m_port;
    /// Its destruction ends pending calls.
    QObject m_session;
};

} // namespace tidewick
