// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

class QWidget;

namespace tidewick {

/// Shows a window in front of those of other programs and gives it the keyboard focus.
void bringForward(QWidget &window);

} // namespace tidewick
