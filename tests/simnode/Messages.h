// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include "simnode/Answers.h"

#include <QJsonObject>
#include <QStringList>

#include <vector>

/// Helpers shared by the tests of the simulated node's messages.
namespace tidewick::sim {

/// The recorded answer in this file.
QJsonObject recorded(const char *file);

/// The messages sent by "node" or "client" in a recorded session.
std::vector<QJsonObject> session(const char *file, const char *from);

/// Each member of the message with the type of its value, as sorted lines. Leaves out members whose
/// presence depends on the current activity of a node.
QStringList shapeOf(const QJsonValue &message);

/// The answers of a node started at 2026-11-20 19:47:40 UTC.
Answers answersOf(const Scenario &scenario = {},
                  NodeConfiguration::Store store = NodeConfiguration::Store::Mossgrid);

/// The state this long after the start, when the ledgers due by then have closed.
NodeTime timeAt(const Answers &answers, Seconds elapsed);

} // namespace tidewick::sim
