// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "support/Surroundings.h"

#include "platform/files/Files.h"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <string>
#include <string_view>
#include <vector>

#include <fcntl.h>
#include <net/if.h>
#include <sched.h>
#include <sys/file.h>
#include <sys/ioctl.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

namespace tidewick {

namespace {

/// Whether a variable is needed to find programs or to control instrumented builds. All others
/// belong to the machine or to its user.
bool isKept(std::string_view variable)
{
    constexpr std::array<std::string_view, 9> kept{
        "PATH",          "LD_LIBRARY_PATH", "ASAN_OPTIONS",      "LSAN_OPTIONS",     "TSAN_OPTIONS",
        "UBSAN_OPTIONS", "GCOV_PREFIX",     "GCOV_PREFIX_STRIP", "LLVM_PROFILE_FILE"};
    return variable.starts_with("QTEST_")
           || std::find(kept.begin(), kept.end(), variable) != kept.end();
}

void forgetEnvironment()
{
    std::vector<std::string> variables;
    for (char **entry = environ; *entry != nullptr; ++entry)
        variables.emplace_back(*entry, std::strcspn(*entry, "="));
    for (const std::string &variable : variables) {
        if (!isKept(variable))
            qunsetenv(variable.c_str());
    }
}

} // namespace

TestHome::TestHome()
{
    forgetEnvironment();
    for (const auto &[variable, name] :
         {std::pair("HOME", "home"), std::pair("XDG_CONFIG_HOME", "config"),
          std::pair("XDG_DATA_HOME", "data"), std::pair("XDG_CACHE_HOME", "cache"),
          std::pair("XDG_STATE_HOME", "state"), std::pair("TMPDIR", "tmp"),
          // Where a machine keeps data common to its users: icon themes, services, defaults.
          std::pair("XDG_DATA_DIRS", "machine-data"),
          std::pair("XDG_CONFIG_DIRS", "machine-config")}) {
        const std::filesystem::path folder = m_folder.path() / name;
        std::filesystem::create_directory(folder);
        qputenv(variable, QByteArray::fromStdString(folder.string()));
    }
    // The machine may run its own node as a service.
    qputenv("DBUS_SYSTEM_BUS_ADDRESS",
            "unix:path=" + QByteArray::fromStdString((m_folder.path() / "no-system-bus").string()));
    qputenv("FONTCONFIG_FILE", TIDEWICK_TEST_DATA "/fonts.conf");
    qputenv("LANG", "C.UTF-8");
    qputenv("TZ", "UTC");
}

void drawOffscreen()
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
}

namespace {

/// Inside a new user namespace, files keep their owner only if the user is mapped to itself.
bool mapUser(uid_t user, gid_t group)
{
    std::ofstream("/proc/self/setgroups") << "deny";
    std::ofstream users("/proc/self/uid_map");
    users << user << ' ' << user << " 1" << std::flush;
    std::ofstream groups("/proc/self/gid_map");
    groups << group << ' ' << group << " 1" << std::flush;
    return users.good() && groups.good();
}

bool bringLoopbackUp()
{
    const UniqueDescriptor socket(::socket(AF_INET, SOCK_DGRAM | SOCK_CLOEXEC, 0));
    ifreq request{};
    std::strcpy(request.ifr_name, "lo");
    request.ifr_flags = IFF_UP | IFF_RUNNING;
    return socket && ::ioctl(socket.get(), SIOCSIFFLAGS, &request) == 0;
}

bool unshareNetwork()
{
    if (::unshare(CLONE_NEWNET) == 0)
        return true;
    const uid_t user = ::getuid();
    const gid_t group = ::getgid();
    return ::unshare(CLONE_NEWUSER | CLONE_NEWNET) == 0 && mapUser(user, group);
}

/// Tries it in a child, because a partial success would leave the process in a network without any
/// interface up.
bool canHavePrivateLoopback()
{
    const pid_t child = ::fork();
    if (child == 0)
        ::_exit(unshareNetwork() && bringLoopbackUp() ? EXIT_SUCCESS : EXIT_FAILURE);
    int status = EXIT_FAILURE;
    return child > 0 && ::waitpid(child, &status, 0) == child && WIFEXITED(status)
           && WEXITSTATUS(status) == EXIT_SUCCESS;
}

/// Takes a lock that is held until the process ends. Each user has a separate lock file, because
/// users cannot open each other's files in a world-writable folder.
void waitForSharedLoopback()
{
    const std::string path = "/tmp/tidewick-tests-loopback-" + std::to_string(::getuid()) + ".lock";
    const int lock = ::open(path.c_str(), O_RDWR | O_CREAT | O_NOFOLLOW | O_CLOEXEC, 0600);
    if (lock < 0 || ::flock(lock, LOCK_EX) != 0)
        qFatal("Cannot lock the loopback network");
}

} // namespace

void enterPrivateLoopback()
{
    if (!canHavePrivateLoopback())
        waitForSharedLoopback();
    else if (!unshareNetwork() || !bringLoopbackUp())
        qFatal("Cannot bring up the private loopback network");
}

} // namespace tidewick
