// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include "node/BootstrapProgress.h"
#include "node/NodeStatus.h"

#include <QJsonObject>

// Turns the node's answers into the status that the user sees. Pure functions of their arguments.

namespace tidewick::ServerInfo {

/// Updates phase, detail and figures from the "info" object of a server_info answer. Figures that
/// the answer does not contain stay unchanged, except for the peers.
void update(NodeStatus &status, const QJsonObject &info, const BootstrapProgress &bootstrap);

/// The node's own memory figures from a get_counts answer, as text; nothing unless both are
/// present.
std::optional<QString> reportedMemory(const QJsonObject &counts);

/// "1.24 GB · peak 2.31 GB".
QString memoryText(qint64 footprint, qint64 peakFootprint);

} // namespace tidewick::ServerInfo
