// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QIcon>

namespace tidewick {

/// Returns the application's icon: the one installed with the desktop's icons, or else the one in
/// the bundle.
QIcon applicationIcon();

} // namespace tidewick
