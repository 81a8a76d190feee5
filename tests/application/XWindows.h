// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QImage>
#include <QString>

namespace tidewick {

/// Whether a window with this title is visible on the X server that the environment points to.
bool isWindowShown(const QString &title);

/// Asks the program that owns the window to close it, as a window manager does.
void closeWindow(const QString &title);

/// The window's contents, provided that it is entirely on the screen and not covered; a null image
/// if there is no such window.
QImage windowPicture(const QString &title);

} // namespace tidewick
