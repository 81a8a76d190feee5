// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include "application/Beside.h"
#include "application/Desktop.h"

#include <QJsonObject>

#include <memory>

namespace tidewick {

/// A Wayland compositor without a physical screen, and a panel with a tray. While it exists, the
/// environment points to it. Needs a session bus.
class WaylandDesktop
{
public:
    explicit WaylandDesktop(const SessionBus &bus);

    /// Whether the compositor, which refuses to run as root, can run here.
    static bool canRun();
    WaylandDesktop(const WaylandDesktop &) = delete;
    WaylandDesktop &operator=(const WaylandDesktop &) = delete;
    ~WaylandDesktop();

    /// Whether a window with this title is open, and whether it has the keyboard focus.
    static bool hasWindow(const QByteArray &title);
    static bool hasFocus(const QByteArray &title);

    /// Gives a command to the compositor, such as "[title=X] kill", which closes a window.
    static bool tell(const std::string &command);

    /// Presses and releases a key, such as "Return", in the window that has the focus.
    static bool press(const char *key);

    /// The text on the clipboard, as another program reads it. Empty if there is none.
    static QByteArray clipboard();

    Beside &compositor() { return *m_compositor; }

private:
    static QJsonObject tree();

    std::unique_ptr<Beside> m_compositor;
    std::unique_ptr<Beside> m_panel;
};

} // namespace tidewick
