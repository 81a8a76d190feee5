// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "simnode/Ending.h"

#include <QLatin1String>

#include <array>
#include <csignal>
#include <cstdlib>

#include <sys/resource.h>
#include <unistd.h>

namespace tidewick::sim {

namespace {

struct NamedSignal
{
    const char *name;
    int number;
};

/// The signals that end a process by default.
constexpr auto signalNames = std::to_array<NamedSignal>({
    {"ABRT", SIGABRT},
    {"ALRM", SIGALRM},
    {"BUS", SIGBUS},
    {"FPE", SIGFPE},
    {"HUP", SIGHUP},
    {"ILL", SIGILL},
    {"INT", SIGINT},
    {"KILL", SIGKILL},
    {"PIPE", SIGPIPE},
    {"QUIT", SIGQUIT},
    {"SEGV", SIGSEGV},
    {"TERM", SIGTERM},
    {"TRAP", SIGTRAP},
});

} // namespace

std::optional<int> signalNamed(QStringView name)
{
    if (name.startsWith(u"SIG"))
        name = name.mid(3);
    for (const NamedSignal &known : signalNames) {
        if (name == QLatin1String(known.name))
            return known.number;
    }
    return std::nullopt;
}

void dieOf(int signalNumber)
{
    const rlimit none{0, 0};
    ::setrlimit(RLIMIT_CORE, &none);
    ::signal(signalNumber, SIG_DFL);
    sigset_t set;
    ::sigemptyset(&set);
    ::sigaddset(&set, signalNumber);
    ::sigprocmask(SIG_UNBLOCK, &set, nullptr);
    ::kill(::getpid(), signalNumber);
    // Not reached: an unblocked signal sent to oneself is delivered before kill returns.
    std::abort();
}

} // namespace tidewick::sim
