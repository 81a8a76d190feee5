// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QString>

#include <optional>

/// Reads the bundle's description of its build, as NodeConfig::buildInfo gives it: lines of
/// key=value.
namespace tidewick::BuildInfo {

/// Only lines that are a key and a value count; of two with the same key the last one.
std::optional<QString> value(QStringView key, const QString &buildInfo);

/// Whether the node is configured for the store Mossgrid, as where nothing else is said.
bool hasMossgrid(const QString &buildInfo);

} // namespace tidewick::BuildInfo
