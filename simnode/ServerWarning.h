// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include "simnode/Seconds.h"

#include <QJsonObject>
#include <QStringView>

#include <optional>

namespace tidewick::sim {

/// The conditions that server_info warns of, in the order in which a real node lists them.
enum class ServerWarning : char { AmendmentBlocked, NoValidLists, AmendmentMajority, Other };

/// The warning that a scenario calls by this name, such as "amendment-majority". NoValidLists has
/// no name, since it follows from the lists.
std::optional<ServerWarning> serverWarningNamed(QStringView name);

/// The element of the member "warnings". Dates are relative to the beginning of the run.
QJsonObject warningObject(ServerWarning warning, WallTime begin);

} // namespace tidewick::sim
