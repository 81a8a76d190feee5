// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "platform/process/Supervisor.h"

#include "platform/process/StandardStreams.h"

#include <array>
#include <csignal>
#include <cstdlib>

#include <fcntl.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

namespace tidewick {

namespace {

/// What the supervisor waits for: the end of the application, and signals that it passes on.
sigset_t awaitedSignals()
{
    sigset_t awaited;
    sigemptyset(&awaited);
    for (const int number : {SIGCHLD, SIGHUP, SIGINT, SIGQUIT, SIGTERM, SIGUSR1, SIGUSR2})
        sigaddset(&awaited, number);
    return awaited;
}

/// The kernel's signal comes from the end of the parent's only thread, so it comes once.
void endWithParent(pid_t parent)
{
    ::prctl(PR_SET_PDEATHSIG, SIGTERM);
    if (::getppid() != parent)
        ::raise(SIGTERM);
}

/// Blocks until the process has ended. Passes on all other signals.
int statusOf(pid_t process)
{
    const sigset_t awaited = awaitedSignals();
    while (true) {
        const int number = ::sigwaitinfo(&awaited, nullptr);
        int status = 0;
        if (number == SIGCHLD && ::waitpid(process, &status, WNOHANG) == process)
            return status;
        if (number > 0 && number != SIGCHLD)
            ::kill(process, number);
    }
}

} // namespace

Supervisor::Supervisor()
{
    std::array<int, 2> ends{};
    if (::pipe2(ends.data(), O_CLOEXEC | O_NONBLOCK) != 0)
        return;
    m_read = UniqueDescriptor(ends[0]);
    m_write = UniqueDescriptor(ends[1]);
    // If it is ignored, the kernel discards the application's status.
    ::signal(SIGCHLD, SIG_DFL);
    const sigset_t awaited = awaitedSignals();
    sigset_t before;
    ::sigprocmask(SIG_BLOCK, &awaited, &before);
    const pid_t parent = ::getpid();
    m_application = ::fork();
    if (!isApplication()) {
        m_write.reset();
        return;
    }
    m_read.reset();
    if (m_application == 0) {
        m_id = parent;
        endWithParent(parent);
    }
    ::sigprocmask(SIG_SETMASK, &before, nullptr);
}

Supervisor::~Supervisor() = default;

void Supervisor::noteRunning() const
{
    (void)!::write(m_write.get(), "", 1);
}

Supervisor::Ending Supervisor::waitForEnd() const
{
    const int status = statusOf(m_application);
    if (WIFSIGNALED(status))
        return {WTERMSIG(status), true};
    char running = 0;
    if (WEXITSTATUS(status) == EXIT_SUCCESS || ::read(m_read.get(), &running, 1) != 1)
        return {WEXITSTATUS(status), false};
    StandardStreams::printError("The display has gone. Tidewick stops its node and ends.\n");
    return {EXIT_SUCCESS, false};
}

int Supervisor::endLike(const Ending &ending)
{
    if (!ending.signaled)
        return ending.status;
    const rlimit none{0, 0}; // the application has left its own core file
    ::setrlimit(RLIMIT_CORE, &none);
    ::signal(ending.status, SIG_DFL);
    sigset_t number;
    sigemptyset(&number);
    sigaddset(&number, ending.status);
    ::raise(ending.status);
    ::sigprocmask(SIG_UNBLOCK, &number, nullptr);
    constexpr int shellsWord = 128; // for a process that a signal has ended
    return shellsWord + ending.status;
}

} // namespace tidewick
