// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include "simnode/Seconds.h"

#include <QHash>
#include <QString>

#include <optional>

namespace tidewick::sim {

/// The ways in which the JSON-RPC port can answer; all except the first two are misbehaviour.
enum class RpcFault {
    None,
    Recorded,
    Silent,
    Unread,
    Garbage,
    Array,
    ArrayResult,
    StringResult,
    NoResult,
    Error,
    Status400,
    Status403,
    Status503,
    Status400Json,
    Status403Json,
    Status503Json,
    Unauthorized,
    Redirect,
    Half,
    Drip,
    SlowHeader,
    Huge,
    HugeChunked,
    HugeHeader,
    Gzip,
    Deep,
    Reset,
    WrongTypes,
    Cookie,
    Close,
};

/// The fault that a scenario calls by this name, such as "slow-header".
std::optional<RpcFault> rpcFaultNamed(QStringView name);

/// Whether the answer is the usual one, possibly altered or cut short. The command is then carried
/// out.
bool usesTheUsualAnswer(RpcFault fault);

/// The faults of the port, by method.
struct RpcFaults
{
    RpcFault all = RpcFault::None;
    /// Takes precedence over `all`.
    QHash<QString, RpcFault> ofMethod;
    /// The real time from opening the port to the first misbehaviour.
    Seconds after{0};
    /// Nothing misbehaves until the process gets its cue, SIGUSR1.
    bool onCue = false;
    quint16 redirectPort = 0;

    RpcFault of(const QString &method) const { return ofMethod.value(method, all); }
};

} // namespace tidewick::sim
