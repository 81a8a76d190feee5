// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QByteArray>

#include <optional>

#include <sys/types.h>

/// The unit of the user's service manager to which a node belongs. A unit that a desktop or a
/// terminal creates for a program stops with SIGTERM to all its processes, including the node,
/// which must not receive a second SIGTERM. A session's end also has to wait until the node has
/// closed its store.
namespace tidewick::NodeScope {

/// Moves the node and the supervisor to a scope of their own, unless Tidewick runs as one of the
/// services that come with it. At a session's end, the manager waits for both, and does not signal
/// them before that has taken 105 s; the application stays in its unit and is signalled. Returns
/// before the manager has acted. Without a manager, nothing changes.
void moveThere(pid_t node, std::optional<pid_t> supervisor);

/// Whether a process with this /proc/PID/cgroup runs in a service that comes with Tidewick, which
/// signals Tidewick alone.
bool isOwnService(const QByteArray &controlGroups);

} // namespace tidewick::NodeScope
