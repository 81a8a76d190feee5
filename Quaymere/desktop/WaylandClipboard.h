// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QObject>
#include <QString>

#include <functional>

/// The clipboard of a Wayland session. Compositors accept a new content only from the program whose
/// window has the focus, and ignore all others without a word. A menu drawn by a tray host gives
/// its program no focus. Many compositors, but not GNOME's, have a protocol by which any program
/// may set the clipboard; "wl-copy" of the package wl-clipboard speaks it, and keeps the content
/// afterwards.
namespace tidewick::WaylandClipboard {

/// Copies the text, and calls `done` with whether that has succeeded: at once if there is no such
/// clipboard here, and never if `context` is destroyed first. Main thread only.
void copy(const QString &text, QObject *context, const std::function<void(bool copied)> &done);

} // namespace tidewick::WaylandClipboard
