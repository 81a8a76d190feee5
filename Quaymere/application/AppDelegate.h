// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include "desktop/SystemService.h"
#include "node/NodeController.h"
#include "platform/process/DeathWatch.h"

#include <QElapsedTimer>
#include <QObject>
#include <QTimer>

namespace tidewick {

/// Owns the one NodeController of the process. Starts the node when the application has launched,
/// and holds quitting back until the node has ended: the application never leaves a node behind,
/// and never kills one outright. Main thread only.
class AppDelegate final : public QObject
{
    Q_OBJECT

public:
    enum class TerminateReply { Cancel = 0, Now = 1, Later = 2 };

    /// With a controller for the user's data directory. Once the event loop turns, the application
    /// has launched.
    explicit AppDelegate(const DeathWatch &deathWatch, QObject *parent = nullptr);

    NodeController &node() { return m_node; }

    void applicationDidFinishLaunching();

    /// Asks a running node to stop. "Later" means that the node's readyToTerminate follows.
    TerminateReply applicationShouldTerminate();

    /// The one way out, whoever asks for it and however often.
    void terminate();

signals:
    /// The way out has begun.
    void terminating();

    /// Nothing runs any more: the application may end.
    void terminated();

private:
    /// The node of a program that was killed may still be closing its store.
    void startWhenAlone();
    NodeHost hostOfNode();

    const DeathWatch &m_deathWatch;
    /// The node that a package may have brought along and started.
    SystemService m_otherNode;
    NodeController m_node;
    QTimer m_launched;
    QTimer m_lookAgain;
    QElapsedTimer m_waited;
    bool m_terminating = false;
};

} // namespace tidewick
