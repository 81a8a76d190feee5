// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include "simnode/Seconds.h"

#include <QHash>
#include <QString>

#include <optional>

namespace tidewick::sim {

/// The ways in which the JSON-RPC port can answer; all but the first two are misbehaviour.
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

/// The misbehaviour of this name in a scenario, such as "slow-header".
std::optional<RpcFault> rpcFaultNamed(QStringView name);

/// Whether the answer sent is the usual one, altered or cut short at most; then the command is
/// carried out.
bool usesTheUsualAnswer(RpcFault fault);

/// Which misbehaviour applies to which method.
struct RpcFaults
{
    RpcFault all = RpcFault::None;
    /// Goes before `all`.
    QHash<QString, RpcFault> ofMethod;
    /// Real time since the port was opened; nothing misbehaves before.
    Seconds after{0};
    /// Nothing misbehaves before the process is told so.
    bool onCue = false;
    quint16 redirectPort = 0;

    RpcFault of(const QString &method) const { return ofMethod.value(method, all); }
};

} // namespace tidewick::sim
