// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include "application/Desktop.h"
#include "support/Surroundings.h"

#include <QCoreApplication>

namespace tidewick {

/// Everything a program other than a test needs to run the application on a desktop: a loopback
/// network, a home, a bus, an X server, and a panel with its tray ready. Create it first in main().
/// Ends the program if any of these cannot be provided.
template <typename Application = QCoreApplication>
class WholeDesktop
{
public:
    WholeDesktop(int &argc, char **argv) : m_application(argc, argv)
    {
        if (!DesktopPanel::waitForHost(m_bus))
            qFatal("No tray host appeared");
    }

    const SessionBus &bus() const { return m_bus; }
    Application &application() { return m_application; }

private:
    /// Entered before any sockets or threads exist.
    struct Loopback
    {
        Loopback() { enterPrivateLoopback(); }
    };

    const Loopback m_loopback;
    const TestHome m_home;
    const SessionBus m_bus;
    const XServer m_display;
    Application m_application;
    const DesktopPanel m_panel;
};

} // namespace tidewick
