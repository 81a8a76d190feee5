// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QByteArray>

#include <sys/types.h>

/// The unit of the user's service manager to which a node belongs. A unit that a desktop or a
/// terminal creates for a program stops with SIGTERM to all its processes, including the node,
/// which must not receive a second SIGTERM. A session's end also has to wait until the node has
/// closed its store.
namespace tidewick::NodeScope {

/// Moves the node to a scope of its own, unless Tidewick runs as one of the services that come with
/// it. The manager waits for the node's end before it ends the scope, and does not signal the node
/// before that has taken 105 s. Does not wait for the manager; without one, nothing changes.
void moveThere(pid_t node);

/// Whether a process with this /proc/PID/cgroup runs in a service that comes with Tidewick, which
/// signals Tidewick alone.
bool isOwnService(const QByteArray &controlGroups);

} // namespace tidewick::NodeScope
