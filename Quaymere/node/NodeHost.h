// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include "platform/files/Bundle.h"
#include "platform/files/Defaults.h"
#include "platform/process/ChildProcess.h"
#include "platform/time/Clock.h"

#include <filesystem>
#include <functional>
#include <memory>
#include <optional>

namespace tidewick {

/// The node controller's access to the host. Real by default; a test substitutes its own.
struct NodeHost
{
    Bundle bundle = Bundle::main();
    Defaults defaults = Defaults::standard();
    std::shared_ptr<Clock> clock = std::make_shared<SystemClock>();

    /// Probe::freeGB.
    std::function<std::optional<double>(const std::filesystem::path &)> freeGB;
    /// Probe::portInUse.
    std::function<bool(quint16 port, qint32 timeoutMs)> portInUse;
    /// Whether another node runs on this machine besides the controller's own. Asked in every fifth
    /// poll. By default, checks the port on which such a node accepts peers.
    std::function<bool()> hasCompany;
    /// ChildProcess::start.
    std::function<std::unique_ptr<ChildProcess>(const ChildSpec &)> spawn;
    /// Whether this runs inside an application sandbox, where the memory use of other processes
    /// cannot be read.
    bool sandboxed;

    /// The real host. The DeathWatch, if there is one, guards the child processes, and must outlive
    /// them.
    explicit NodeHost(const DeathWatch *deathWatch = nullptr);
};

} // namespace tidewick
