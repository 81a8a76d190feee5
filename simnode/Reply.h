// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QJsonObject>
#include <QString>

#include <variant>

namespace tidewick::sim {

/// The reason why a command has no result: the members "error", "error_code" and "error_message" of
/// the answer.
struct RpcError
{
    const char *name;
    int code;
    const char *message;
};

/// The outcome of a command: its result, without a status, or an error.
using Reply = std::variant<QJsonObject, RpcError>;

namespace RpcErrors {

inline constexpr RpcError ledgerNotFound{"lgrNotFound", 21, "ledgerNotFound"};
inline constexpr RpcError ledgerIndexMalformed{"invalidParams", 31, "ledgerIndexMalformed"};
inline constexpr RpcError unknownCommand{"unknownCmd", 32, "Unknown method."};
inline constexpr RpcError malformedStream{"malformedStream", 38, "Stream malformed."};

} // namespace RpcErrors

/// The body of an answer over HTTP. An error echoes the `parameters`.
QJsonObject httpEnvelope(const Reply &reply, const QString &method, const QJsonObject &parameters);

/// The answer to a request over the WebSocket, with the request's "id" if it has one.
QJsonObject webSocketEnvelope(const Reply &reply, const QJsonObject &request);

} // namespace tidewick::sim
