// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QString>

#include <optional>

namespace tidewick {

/// "Version 1.0.0 · node 2.3.0": the application's version, of a bundle that has one, and the
/// node's where the build's description, lines of key=value, tells it, or else the node's path.
QString versionLine(const std::optional<QString> &applicationVersion, const QString &buildInfo);

} // namespace tidewick
