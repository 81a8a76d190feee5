// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QString>

#include <optional>

/// Reads the bundle's description of its build, as returned by NodeConfig::buildInfo: lines of
/// key=value.
namespace tidewick::BuildInfo {

/// The value of this key. Only lines with a key and a value count; if several have the same key,
/// the last one does.
std::optional<QString> value(QStringView key, const QString &buildInfo);

/// Whether the node is configured for the Mossgrid store, which is the default if nothing is
/// stated.
bool hasMossgrid(const QString &buildInfo);

} // namespace tidewick::BuildInfo
