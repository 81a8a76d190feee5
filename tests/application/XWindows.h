// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QImage>
#include <QString>

namespace tidewick {

/// Whether a window of that title is to be seen on the X server that the environment names.
bool isWindowShown(const QString &title);

/// Asks the program whose window it is to close it, as a window manager does.
void closeWindow(const QString &title);

/// What that window shows, while it is whole on the screen and nothing covers it; null without it.
QImage windowPicture(const QString &title);

} // namespace tidewick
