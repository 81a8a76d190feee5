// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include "node/NodeStatus.h"

namespace tidewick {

/// The status of a node in sync.
inline NodeStatus sampleStatus()
{
    NodeStatus status;
    status.phase = Phase::Full;
    status.detail = QStringLiteral("Following mainnet");
    status.ledger = QStringLiteral("#98765432 (3s ago)");
    status.ledgerSeq = 98765432;
    status.peers = 21;
    status.uptime = QStringLiteral("27h 3m");
    status.memory = QStringLiteral("1.24 GB · peak 2.31 GB");
    status.storeSize = QStringLiteral("14.21 GB");
    status.freeSpace = QStringLiteral("212.4 GB free");
    status.storage = QStringLiteral("Storage: next trim after 2.0 GB");
    status.hasServerInfo = true;
    status.hasProcess = true;
    return status;
}

} // namespace tidewick
