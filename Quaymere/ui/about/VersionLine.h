// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QString>

#include <optional>

namespace tidewick {

/// Returns a line such as "Version 1.0.0 · node 2.3.0". The application's version comes from its
/// bundle; without one the line says "development build". The node's version comes from the build
/// description, lines of key=value. If it is missing, the node's path takes its place, if that is
/// known.
QString versionLine(const std::optional<QString> &applicationVersion, const QString &buildInfo);

} // namespace tidewick
