// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include "application/Beside.h"
#include "support/TestFiles.h"

#include <QByteArray>

#include <memory>
#include <vector>

namespace tidewick {

/// A systemd user manager as in a user's session, with its units in the test's home and a session
/// bus. On destruction it is asked to exit, if it has not been before.
///
/// It needs its own control group and an environment that looks like a machine booted with systemd;
/// both require root.
class UserManager
{
public:
    UserManager();
    UserManager(const UserManager &) = delete;
    UserManager &operator=(const UserManager &) = delete;
    ~UserManager();

    /// Waits until the manager is up, or until it turns out that it cannot run on this machine.
    bool comesUp();
    bool isRefused() const { return !m_manager || m_manager->ending(); }

    /// Ends the manager as the end of the user's last session does: it stops everything it has
    /// started, and then exits. What is left is lost: a machine would now kill it. A manager that
    /// is not told when a control group becomes empty, as in a container that has only the first
    /// version of control groups, waits for the time limits of its units; it is killed as soon as
    /// it is alone.
    void exit();

    /// Runs systemctl and returns whether it succeeded.
    bool control(std::vector<std::string> arguments) const;
    QByteArray property(const std::string &unit, const std::string &name) const;

    /// The environment in which programs reach the manager and the session bus.
    ProcessEnvironment environment() const;

    /// The address at which the session bus listens.
    QString busAddress() const;

    /// The folder in which the manager looks for the user's own units.
    static std::filesystem::path units();

private:
    /// Whether no process that the manager has started is left.
    bool isAlone() const;

    std::vector<std::filesystem::path> m_controlGroups;
    TemporaryFolder m_runtime;
    std::unique_ptr<Beside> m_manager;
};

} // namespace tidewick
