// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QCoro/QCoroTask>
#include <QJsonObject>
#include <QObject>
#include <QString>

#include <optional>

namespace tidewick {

/// Asks the node over its JSON-RPC port on loopback, each question over a connection of its own, so
/// that nothing is carried over from one to the next. Main thread only; destroying it answers what
/// is still being asked with nothing.
class NodeRPC
{
public:
    /// An answer with a body of more bytes than this is dropped as it arrives.
    static constexpr qint64 largestAnswer = qint64{16} * 1024 * 1024;

    explicit NodeRPC(quint16 port) : m_port(port) {}

    /// The "result" object of the answer, whatever its HTTP status and whether it reports an error
    /// or not; redirects are not followed. Nothing when there is no such answer: a refused
    /// connection (told at once), 3 s without a byte, 5 s in all, half a body, something else than
    /// JSON.
    QCoro::Task<std::optional<QJsonObject>> call(QString method);

    /// The "result" object in the body of an answer.
    static std::optional<QJsonObject> resultOf(const QByteArray &body);

private:
    quint16 m_port;
    /// Its end tells what is still being asked.
    QObject m_session;
};

} // namespace tidewick
