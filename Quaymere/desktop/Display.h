// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

namespace tidewick::Display {

/// Whether there is a window system to connect to. Qt ends the program if it finds none, so check
/// this first.
bool isThere();

} // namespace tidewick::Display
