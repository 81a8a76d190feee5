// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include "application/Desktop.h"
#include "support/Surroundings.h"

#include <QCoreApplication>

namespace tidewick {

/// All that a program which is no test takes to have the application run on a desktop: a loopback
/// network, a home, a bus, an X server and a panel whose tray is there. The first thing in main();
/// ends the program when any of it cannot be had.
template <typename Application = QCoreApplication>
class WholeDesktop
{
public:
    WholeDesktop(int &argc, char **argv) : m_application(argc, argv)
    {
        if (!DesktopPanel::waitForHost(m_bus))
            qFatal("No tray host came up");
    }

    const SessionBus &bus() const { return m_bus; }
    Application &application() { return m_application; }

private:
    /// Entered before there are sockets or threads.
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
