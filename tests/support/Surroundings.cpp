// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "support/Surroundings.h"

#include "platform/Files.h"

#include <cstdlib>
#include <cstring>
#include <fstream>
#include <string>

#include <fcntl.h>
#include <net/if.h>
#include <sched.h>
#include <sys/file.h>
#include <sys/ioctl.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

namespace tidewick {

TestHome::TestHome()
{
    for (const auto &[variable, name] :
         {std::pair("HOME", "home"), std::pair("XDG_CONFIG_HOME", "config"),
          std::pair("XDG_DATA_HOME", "data"), std::pair("TMPDIR", "tmp")}) {
        const std::filesystem::path folder = m_folder.path() / name;
        std::filesystem::create_directory(folder);
        qputenv(variable, QByteArray::fromStdString(folder.string()));
    }
    // The machine may run a node of its own as a service.
    qputenv("DBUS_SYSTEM_BUS_ADDRESS",
            "unix:path=" + QByteArray::fromStdString((m_folder.path() / "no-system-bus").string()));
    qunsetenv("APP_SANDBOX_CONTAINER_ID");
    qunsetenv("TIDEWICK_SIMNODE");
}

void drawOffscreen()
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    for (const char *variable :
         {"QT_QPA_PLATFORMTHEME", "QT_STYLE_OVERRIDE", "QT_SCALE_FACTOR", "QT_SCREEN_SCALE_FACTORS",
          "QT_ENABLE_HIGHDPI_SCALING", "QT_FONT_DPI"})
        qunsetenv(variable);
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

/// Tried in a child, since what works only in part leaves a process in a network without anything.
bool canHavePrivateLoopback()
{
    const pid_t child = ::fork();
    if (child == 0)
        ::_exit(unshareNetwork() && bringLoopbackUp() ? EXIT_SUCCESS : EXIT_FAILURE);
    int status = EXIT_FAILURE;
    return child > 0 && ::waitpid(child, &status, 0) == child && WIFEXITED(status)
           && WEXITSTATUS(status) == EXIT_SUCCESS;
}

/// Held until the process ends. Each user has a file of their own: nobody may open another's in a
/// folder open to all.
void waitForSharedLoopback()
{
    const std::string path = "/tmp/tidewick-tests-loopback-" + std::to_string(::getuid()) + ".lock";
    const int lock = ::open(path.c_str(), O_RDWR | O_CREAT | O_NOFOLLOW | O_CLOEXEC, 0600);
    if (lock < 0 || ::flock(lock, LOCK_EX) != 0)
        qFatal("No lock for the loopback network");
}

} // namespace

void enterPrivateLoopback()
{
    if (!canHavePrivateLoopback())
        waitForSharedLoopback();
    else if (!unshareNetwork() || !bringLoopbackUp())
        qFatal("The private loopback network cannot be brought up");
}

} // namespace tidewick
