// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "simnode/RpcFault.h"

#include <algorithm>
#include <array>

namespace tidewick::sim {

namespace {

struct NamedFault
{
    const char *name;
    RpcFault fault;
    bool usualAnswer;
};

constexpr auto faults = std::to_array<NamedFault>({
    {"ok", RpcFault::None, true},
    {"recorded", RpcFault::Recorded, true},
    {"silent", RpcFault::Silent, false},
    {"unread", RpcFault::Unread, false},
    {"garbage", RpcFault::Garbage, false},
    {"array", RpcFault::Array, false},
    {"array-result", RpcFault::ArrayResult, false},
    {"string-result", RpcFault::StringResult, false},
    {"no-result", RpcFault::NoResult, false},
    {"error", RpcFault::Error, false},
    {"400", RpcFault::Status400, false},
    {"403", RpcFault::Status403, false},
    {"503", RpcFault::Status503, false},
    {"400-json", RpcFault::Status400Json, true},
    {"403-json", RpcFault::Status403Json, true},
    {"503-json", RpcFault::Status503Json, true},
    {"401", RpcFault::Unauthorized, false},
    {"redirect", RpcFault::Redirect, false},
    {"half", RpcFault::Half, true},
    {"drip", RpcFault::Drip, true},
    {"slow-header", RpcFault::SlowHeader, true},
    {"huge", RpcFault::Huge, false},
    {"huge-chunked", RpcFault::HugeChunked, false},
    {"huge-header", RpcFault::HugeHeader, false},
    {"gzip", RpcFault::Gzip, true},
    {"deep", RpcFault::Deep, false},
    {"reset", RpcFault::Reset, true},
    {"wrong-types", RpcFault::WrongTypes, true},
    {"cookie", RpcFault::Cookie, true},
    {"close", RpcFault::Close, true},
});

} // namespace

std::optional<RpcFault> rpcFaultNamed(QStringView name)
{
    const auto *known = std::find_if(faults.begin(), faults.end(), [name](const NamedFault &entry) {
        return name == QLatin1String(entry.name);
    });
    return known == faults.end() ? std::nullopt : std::optional(known->fault);
}

bool usesTheUsualAnswer(RpcFault fault)
{
    return std::any_of(faults.begin(), faults.end(), [fault](const NamedFault &entry) {
        return entry.fault == fault && entry.usualAnswer;
    });
}

} // namespace tidewick::sim
