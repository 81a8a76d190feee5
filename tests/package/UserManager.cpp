// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "package/UserManager.h"

#include "package/Tool.h"

#include <csignal>
#include <fstream>

#include <unistd.h>

namespace tidewick {

namespace fs = std::filesystem;

namespace {

/// Creates a control group in each hierarchy; empty if none can be created.
std::vector<fs::path> makeControlGroups()
{
    static int number = 0;
    const std::string name =
        "tidewick-test-" + std::to_string(::getpid()) + '-' + std::to_string(++number);
    std::vector<fs::path> groups;
    for (const char *hierarchy :
         {"/sys/fs/cgroup", "/sys/fs/cgroup/unified", "/sys/fs/cgroup/systemd"}) {
        if (!fs::exists(fs::path(hierarchy) / "cgroup.procs"))
            continue;
        const fs::path group = fs::path(hierarchy) / name;
        std::error_code error;
        if (fs::create_directory(group, error))
            groups.push_back(group);
    }
    return groups;
}

/// Returns false while processes are left in the group.
bool removeControlGroup(const fs::path &group)
{
    std::error_code error;
    for (const auto &entry : fs::directory_iterator(group, error)) {
        if (entry.is_directory() && !entry.is_symlink())
            removeControlGroup(entry.path());
    }
    return fs::remove(group, error);
}

/// Runs in the manager's shell first, which then becomes the manager itself.
constexpr const char *becomeManager = R"(
    mount -t tmpfs none /run
    mkdir -p /run/systemd/system
    for group in "$@"; do
        echo $$ >"$group/cgroup.procs"
    done
    exec /lib/systemd/systemd --user --log-target=null)";

} // namespace

UserManager::UserManager() : m_controlGroups(makeControlGroups())
{
    ChildSpec spec;
    spec.executable = "/usr/bin/unshare";
    spec.arguments = {"--mount", "sh", "-euc", becomeManager, "sh"};
    for (const fs::path &group : m_controlGroups)
        spec.arguments.push_back(group);
    spec.environment["XDG_RUNTIME_DIR"] = m_runtime.path();
    if (!m_controlGroups.empty())
        m_manager = std::make_unique<Beside>(std::move(spec));
}

UserManager::~UserManager()
{
    exit();
    for (const fs::path &group : m_controlGroups) {
        if (!waitUntil([&] { return removeControlGroup(group); }))
            qWarning("Processes are left in %s", group.c_str());
    }
}

void UserManager::exit()
{
    if (!m_manager)
        return;
    m_manager->send(SIGTERM);
    if (!waitUntil([this] { return m_manager->ending() || isAlone(); }))
        qWarning("The manager has not stopped what it has started");
    if (!m_manager->ending())
        m_manager->send(SIGKILL);
    m_manager.reset();
}

bool UserManager::isAlone() const
{
    const auto holdsOthers = [this](const fs::path &group) {
        std::ifstream processes(group / "cgroup.procs");
        for (pid_t process = 0; processes >> process;)
            if (process != m_manager->id())
                return true;
        return false;
    };
    for (const fs::path &group : m_controlGroups) {
        if (holdsOthers(group))
            return false;
        std::error_code error;
        for (fs::recursive_directory_iterator entry(group, error), end; entry != end;
             entry.increment(error)) {
            if (entry->is_directory(error) && holdsOthers(entry->path()))
                return false;
        }
    }
    return true;
}

bool UserManager::comesUp()
{
    return waitUntil(
        [this] { return isRefused() || property("default.target", "ActiveState") == "active"; });
}

bool UserManager::control(std::vector<std::string> arguments) const
{
    arguments.insert(arguments.begin(), {"systemctl", "--user", "--quiet"});
    const Outcome outcome = runTool(std::move(arguments), environment());
    if (!outcome.error.isEmpty())
        qWarning("%s", outcome.error.constData());
    return !outcome.signaled && outcome.status == 0;
}

QByteArray UserManager::property(const std::string &unit, const std::string &name) const
{
    return runTool({"systemctl", "--user", "show", "--value", "--property=" + name, unit},
                   environment())
        .output.trimmed();
}

ProcessEnvironment UserManager::environment() const
{
    return {{"XDG_RUNTIME_DIR", m_runtime.path().string()},
            {"DBUS_SESSION_BUS_ADDRESS", busAddress().toStdString()}};
}

QString UserManager::busAddress() const
{
    return QString::fromStdString("unix:path=" + (m_runtime.path() / "bus").string());
}

fs::path UserManager::units()
{
    return fs::path(qgetenv("XDG_CONFIG_HOME").toStdString()) / "systemd/user";
}

} // namespace tidewick
