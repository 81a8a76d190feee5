// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include "application/Desktop.h"
#include "application/LaunchedApplication.h"
#include "application/TrayReader.h"

#include <memory>

namespace tidewick::soaking {

/// The application on a separate desktop, with a node whose scenario can change. Provides actions
/// on it and a way back to the state in which it is measured. If an action does not succeed in
/// ample time, the program aborts with a message.
class Subject
{
public:
    /// Requires the application object.
    Subject();

    /// Brings the application into the state in which it is measured: the node is in sync, the
    /// ledger window is open and follows it, and the menu's figures match the node's own answers.
    void settle();

    pid_t process() { return m_application->application(); }
    std::optional<pid_t> node() const { return m_application->node(); }

    /// Sets the scenario of nodes that start from now on.
    void setScenario(const QByteArray &scenario);
    /// Sets the scenario of a healthy node.
    void resetScenario();

    /// Chooses a command of the tray's menu.
    void press(const char *command);
    /// Does so if the menu currently offers it. Returns whether it did.
    bool pressIfThere(const char *command);
    bool isInPhase(const char *title);

    void closeLedger();
    void launchAgain();
    void restartPanel();
    /// Cuts the connections of the node's stream. The node keeps running.
    void dropStream() const;

    /// Quits the application. Returns whether it exits with status 0 and leaves no node behind.
    bool quits();

private:
    bool isSettled();
    bool showsTheNodesFigures();
    QString rowOf(const char *name);

    SessionBus m_bus;
    XServer m_display;
    TestBundle m_bundle;
    TemporaryFolder m_folder;
    std::unique_ptr<DesktopPanel> m_panel;
    std::unique_ptr<TrayReader> m_reader;
    std::unique_ptr<LaunchedApplication> m_application;
};

} // namespace tidewick::soaking
