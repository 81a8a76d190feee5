// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include "node/BootstrapProgress.h"
#include "node/NodeStatus.h"

#include <QJsonObject>

// Turns what the node answers into what the user sees. Pure functions of their arguments.

namespace tidewick::ServerInfo {

/// Brings phase, detail and figures up to date with the "info" object of a server_info answer.
/// Figures the answer does not hold stay as they were, but for the peers.
void update(NodeStatus &status, const QJsonObject &info, const BootstrapProgress &bootstrap);

/// The node's own figures of its memory from a get_counts answer, as text; nothing without both.
std::optional<QString> reportedMemory(const QJsonObject &counts);

/// "1.24 GB · peak 2.31 GB".
QString memoryText(qint64 footprint, qint64 peakFootprint);

} // namespace tidewick::ServerInfo
