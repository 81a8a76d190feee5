// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include "platform/files/Files.h"

#include <optional>

#include <sys/types.h>

namespace tidewick {

/// Splits the program in two processes: the launched one becomes the supervisor, and its child the
/// application. A terminal, a session or a service manager sees the supervisor, which remains until
/// the node has ended. The application cannot promise that: it may crash, and Qt exits without
/// asking as soon as the display has gone.
///
/// The supervisor passes on the signals it receives. If it dies, the application receives SIGTERM.
class Supervisor
{
public:
    /// How the application ended: the exit status, or the signal that ended it.
    struct Ending
    {
        int status;
        bool signaled;
    };

    /// Forks. Create it before any threads. If forking is impossible, this process is the
    /// application and has no supervisor.
    Supervisor();
    Supervisor(const Supervisor &) = delete;
    Supervisor &operator=(const Supervisor &) = delete;
    ~Supervisor();

    /// Whether this is the process of the application.
    bool isApplication() const { return m_application <= 0; }

    /// For the application: the supervisor's process, if it has one.
    std::optional<pid_t> id() const { return m_id; }

    /// For the application: from now on it exits with 0 or because the display has gone.
    void noteRunning() const;

    /// For the supervisor: passes on signals until the application has ended. If its display has
    /// gone, says so on standard error, and the status is 0.
    Ending waitForEnd() const;

    /// For the supervisor: ends this process as the application ended. Returns the exit status if
    /// that was not by a signal.
    static int endLike(const Ending &ending);

private:
    /// 0 in the application, -1 without a supervisor.
    pid_t m_application = -1;
    std::optional<pid_t> m_id;
    UniqueDescriptor m_read;
    UniqueDescriptor m_write;
};

} // namespace tidewick
