// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

class QWidget;

namespace tidewick {

/// Brings a window to the front, above other programs' windows, and gives it the keyboard focus.
void bringForward(QWidget &window);

} // namespace tidewick
