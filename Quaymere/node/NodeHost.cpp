// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "node/NodeHost.h"

#include "node/Probe.h"

#include <cstdlib>

namespace tidewick {

NodeHost::NodeHost()
    : freeGB(Probe::freeGB), portInUse(Probe::portInUse), spawn(ChildProcess::start),
      sandboxed(std::getenv("APP_SANDBOX_CONTAINER_ID") != nullptr)
{
}

} // namespace tidewick
