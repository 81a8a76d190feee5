// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QSize>

class QWidget;

namespace tidewick {

/// The room for the content of a window on its screen: without panels, and without the window's
/// frame, or a usual one while it has none yet.
QSize freeArea(const QWidget &window);

} // namespace tidewick
