// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include "application/Desktop.h"
#include "application/LaunchedApplication.h"
#include "application/TrayReader.h"

#include <memory>

namespace tidewick::soaking {

/// The application on a desktop of its own, with whatever its node's scenario is at the time: how
/// to do things to it and how to bring it back to the state in which it is measured. One in which
/// something cannot be done within an ample time ends the program with a word.
class Subject
{
public:
    /// Needs the application object.
    Subject();

    /// Sees to it that the node runs, is in sync, and is followed by the ledger window, which is
    /// open, its menu's figures being those that the node itself tells.
    void settle();

    pid_t process() { return m_application->process().id(); }
    std::optional<pid_t> node() const { return m_application->node(); }

    /// What the nodes that are started from now on are to do.
    void setScenario(const QByteArray &scenario);
    /// The one that goes well.
    void resetScenario();

    /// Chooses a command of the tray's menu.
    void press(const char *command);
    /// Does so if the menu has it now.
    bool pressIfThere(const char *command);
    bool isInPhase(const char *title);

    void closeLedger();
    void launchAgain();
    void restartPanel();
    /// Cuts the connections of the node's stream, the node running on.
    void dropStream() const;

    /// Whether it quits, with 0, and leaves nobody behind.
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
