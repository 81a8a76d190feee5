// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QByteArray>

/// A launcher shows that a program starts, for example by its pointer, until the program has
/// finished starting. On X11, windows end that by themselves as they appear, but a program in the
/// tray has none.
namespace tidewick::StartupNotification {

/// Takes the identifier that the launcher has given to this process, before Qt does.
QByteArray takeId();

/// Tells the launcher on X11 that what it launched under this identifier has started. Does nothing
/// for an empty identifier or without an X server.
void finish(const QByteArray &id);

} // namespace tidewick::StartupNotification
