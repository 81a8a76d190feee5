// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QByteArray>
#include <QByteArrayList>

#include <set>
#include <vector>

#include <sys/types.h>

namespace tidewick {

/// What a process has open towards others, as the kernel tells it. All of it is of the network of
/// this process.
struct Sockets
{
    /// Local addresses at which others may connect or send something, file names among them. A
    /// nameless end of a connection is none.
    QByteArrayList open;

    /// The other ends of its connections over IP, also of those that are only being tried.
    std::set<QByteArray> peers;

    /// How many connections over IP there are.
    int connections = 0;

    static Sockets of(pid_t process);
};

/// The process, its children and theirs, but for a child to leave out with all below it.
std::vector<pid_t> familyOf(pid_t process, pid_t without = 0);

/// A counter of the network, such as "IpOutNoRoutes": it also tells of what was over too soon to be
/// seen among the sockets.
qint64 networkCounter(const char *name);

/// Whether this process's network is loopback and nothing else, so that its counters are those of
/// the test.
bool isAloneOnLoopback();

} // namespace tidewick
