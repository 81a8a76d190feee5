// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QtGlobal>

/// The node's ports. It listens on 127.0.0.1 only. The numbers are fixed: the configuration
/// template contains the same ones.
namespace tidewick::NodePorts {

inline constexpr quint16 rpc = 15005;
inline constexpr quint16 webSocket = 16006;

/// The port on which a node accepts connections from peers, if it accepts any. Ours does not, so a
/// listener on this port is another node on this machine.
inline constexpr quint16 peers = 51235;

} // namespace tidewick::NodePorts
