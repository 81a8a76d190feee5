// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QByteArray>
#include <QByteArrayList>

#include <set>
#include <vector>

#include <sys/types.h>

namespace tidewick {

/// The open sockets of a process, as reported by the kernel. Only sockets in this process's network
/// namespace are included.
struct Sockets
{
    /// The local addresses at which other processes may connect or send data, including file names.
    /// Unnamed ends of connections are not included.
    QByteArrayList open;

    /// The remote addresses of its IP connections, including those still being established.
    std::set<QByteArray> peers;

    /// The number of IP connections.
    int connections = 0;

    static Sockets of(pid_t process);
};

/// The process, its children and all their descendants, except the child `without` and its
/// descendants.
std::vector<pid_t> familyOf(pid_t process, pid_t without = 0);

/// A kernel network counter, such as "IpOutNoRoutes". It also counts activity too brief to be seen
/// among the sockets.
qint64 networkCounter(const char *name);

/// Whether this process's network namespace has only a loopback interface, so that the counters
/// reflect the test alone.
bool isAloneOnLoopback();

} // namespace tidewick
