// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "node/NodeStatus.h"

namespace tidewick {

const char *phaseName(Phase phase)
{
    switch (phase) {
    case Phase::Stopped:
        return "stopped";
    case Phase::Starting:
        return "starting";
    case Phase::Bootstrapping:
        return "bootstrapping";
    case Phase::Connecting:
        return "connecting";
    case Phase::Syncing:
        return "syncing";
    case Phase::Full:
        return "full";
    case Phase::Stopping:
        return "stopping";
    case Phase::Error:
        return "error";
    }
    Q_UNREACHABLE();
}

} // namespace tidewick
