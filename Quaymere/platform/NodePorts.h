// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QtGlobal>

/// Where the node listens, on 127.0.0.1 only. Fixed: the configuration template names the same.
namespace tidewick::NodePorts {

inline constexpr quint16 rpc = 15005;
inline constexpr quint16 webSocket = 16006;

/// Where other nodes call in to one that lets them, which ours does not: a listener there is
/// another node on this machine.
inline constexpr quint16 peers = 51235;

} // namespace tidewick::NodePorts
