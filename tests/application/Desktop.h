// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include "application/Beside.h"
#include "support/TestFiles.h"

#include <QDBusConnection>

#include <memory>

namespace tidewick {

/// A session bus of the test's own. While it lives, the environment names it, for this process and
/// for all it starts.
class SessionBus
{
public:
    SessionBus();
    SessionBus(const SessionBus &) = delete;
    SessionBus &operator=(const SessionBus &) = delete;
    ~SessionBus();

    /// A connection of the test's, apart from that of the code under test. Needs the application
    /// object.
    QDBusConnection connection() const;

    Beside &process() { return *m_daemon; }

    /// Ends the bus under whoever is on it.
    void stop() { m_daemon.reset(); }

private:
    TemporaryFolder m_runtime;
    std::unique_ptr<Beside> m_daemon;
    QByteArray m_address;
};

/// An X server without a screen to look at. While it lives, the environment names it.
class XServer
{
public:
    XServer();
    XServer(const XServer &) = delete;
    XServer &operator=(const XServer &) = delete;
    ~XServer();

    Beside &process() { return m_server; }

private:
    Beside m_server;
};

/// A real desktop panel with a tray and nothing else.
class DesktopPanel
{
public:
    DesktopPanel();

    /// False when no tray host is on the bus in time.
    static bool waitForHost(const SessionBus &bus);

    Beside &process() { return m_panel; }

private:
    Beside m_panel;
};

} // namespace tidewick
