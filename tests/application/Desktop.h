// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include "application/Beside.h"
#include "support/TestFiles.h"

#include <QDBusConnection>

#include <memory>

namespace tidewick {

/// A private session bus for the test. While it exists, the environment points this process and its
/// children to it.
class SessionBus
{
public:
    SessionBus();
    SessionBus(const SessionBus &) = delete;
    SessionBus &operator=(const SessionBus &) = delete;
    ~SessionBus();

    /// A connection for the test, separate from the one used by the code under test. Needs the
    /// application object.
    QDBusConnection connection() const;

    Beside &process() { return *m_daemon; }

    /// Stops the bus while clients are still connected.
    void stop() { m_daemon.reset(); }

private:
    TemporaryFolder m_runtime;
    std::unique_ptr<Beside> m_daemon;
    QByteArray m_address;
};

/// An X server without a physical screen. While it exists, the environment points to it.
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

/// A real desktop panel that contains only a tray.
class DesktopPanel
{
public:
    DesktopPanel();

    /// Returns false if no tray host appears on the bus in time.
    static bool waitForHost(const SessionBus &bus);

    Beside &process() { return m_panel; }

private:
    Beside m_panel;
};

} // namespace tidewick
