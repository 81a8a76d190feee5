// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include "application/Beside.h"
#include "support/TestFiles.h"

#include <QByteArray>

#include <memory>
#include <vector>

namespace tidewick {

/// A service manager as a user's session has one, with its units in the home of the test and a
/// session bus. It is told to end with its object, and ends what it has started first.
///
/// It takes a control group of its own, and the appearance of a machine that systemd has started;
/// both take root.
class UserManager
{
public:
    UserManager();
    UserManager(const UserManager &) = delete;
    UserManager &operator=(const UserManager &) = delete;
    ~UserManager();

    /// Waits until it is up, or cannot be had on this machine.
    bool comesUp();
    bool isRefused() const { return !m_manager || m_manager->ending(); }

    /// Whether systemctl has done as it was told.
    bool control(std::vector<std::string> arguments) const;
    QByteArray property(const std::string &unit, const std::string &name) const;

    /// Where the session bus listens.
    QString busAddress() const;

    /// Where it looks for the user's own units.
    static std::filesystem::path units();

private:
    std::vector<std::filesystem::path> m_controlGroups;
    TemporaryFolder m_runtime;
    std::unique_ptr<Beside> m_manager;
};

} // namespace tidewick
