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

/// What the node controller asks of the host. Real by default; a test puts its own in place.
struct NodeHost
{
    Bundle bundle = Bundle::main();
    Defaults defaults = Defaults::standard();
    std::shared_ptr<Clock> clock = std::make_shared<SystemClock>();

    /// Probe::freeGB.
    std::function<std::optional<double>(const std::filesystem::path &)> freeGB;
    /// Probe::portInUse.
    std::function<bool(quint16 port, qint32 timeoutMs)> portInUse;
    /// Whether another node runs on this machine, beside the controller's own. Asked in every
    /// fifth poll: one that nobody calls is found by the port it lets peers call.
    std::function<bool()> hasCompany;
    /// ChildProcess::start.
    std::function<std::unique_ptr<ChildProcess>(const ChildSpec &)> spawn;
    /// Inside an application sandbox the memory of other processes is not to be read.
    bool sandboxed;

    /// The real host. Children it spawns are told by the watch, if there is one, when this program
    /// dies; the watch has to outlive them.
    explicit NodeHost(const DeathWatch *deathWatch = nullptr);
};

} // namespace tidewick
