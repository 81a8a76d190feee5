// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include "simnode/Answers.h"

#include <QJsonObject>
#include <QStringList>

#include <vector>

/// What tests of the simulated node's messages share.
namespace tidewick::sim {

/// A recorded answer.
QJsonObject recorded(const char *file);

/// The messages of a recorded session from "node" or "client".
std::vector<QJsonObject> session(const char *file, const char *from);

/// Every member of the message with the type of its value, as sorted lines; but for members that
/// are there or not, depending on what a node happens to do.
QStringList shapeOf(const QJsonValue &message);

/// The answers of a node launched at 2026-11-20 19:47:40 UTC.
Answers answersOf(const Scenario &scenario = {},
                  NodeConfiguration::Store store = NodeConfiguration::Store::Mossgrid);

/// So long after the launch, with the ledgers closed that are due.
NodeTime timeAt(const Answers &answers, Seconds elapsed);

} // namespace tidewick::sim
