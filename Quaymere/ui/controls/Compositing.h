// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

namespace tidewick::Compositing {

/// Whether what is transparent in a window shows what is behind it. On X11 this needs a compositing
/// manager, which users start and stop as they like: without one, transparent pixels are black.
/// Main thread only.
bool isOn();

} // namespace tidewick::Compositing
