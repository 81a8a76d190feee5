// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include "desktop/SystemService.h"
#include "node/NodeController.h"
#include "platform/process/DeathWatch.h"

#include <QElapsedTimer>
#include <QObject>
#include <QTimer>

#include <optional>

#include <sys/types.h>

namespace tidewick {

/// The processes that outlive the application for its node's sake.
struct Guards
{
    /// Must outlive the application.
    const DeathWatch &deathWatch;
    std::optional<pid_t> supervisor;
};

/// Owns the only NodeController of the process. Starts the node once the application has launched
/// and delays quitting until the node has ended: the application never leaves a node running and
/// never kills one outright. Main thread only.
class AppDelegate final : public QObject
{
    Q_OBJECT

public:
    enum class TerminateReply { Cancel = 0, Now = 1, Later = 2 };

    /// Creates the controller for the user's data directory. The application counts as launched
    /// once the event loop runs.
    explicit AppDelegate(const Guards &guards, QObject *parent = nullptr);

    NodeController &node() { return m_node; }

    void applicationDidFinishLaunching();

    /// Asks a running node to stop. "Later" means that the node emits readyToTerminate once it has
    /// ended.
    TerminateReply applicationShouldTerminate();

    /// Quits the application. Every request to quit ends up here, and repeated requests are
    /// harmless.
    void terminate();

signals:
    /// Emitted once, when quitting begins.
    void terminating();

    /// The node has ended, so the application may exit.
    void terminated();

private:
    /// Starts the node, but waits first for the node of an application that was killed: it may
    /// still be closing its store.
    void startWhenAlone();
    NodeHost hostOfNode();

    const Guards m_guards;
    /// The node that a package may have installed and started as a service.
    SystemService m_otherNode;
    NodeController m_node;
    QTimer m_launched;
    QTimer m_lookAgain;
    QElapsedTimer m_waited;
    bool m_terminating = false;
};

} // namespace tidewick
