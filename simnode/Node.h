// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include "platform/process/SignalListener.h"
#include "simnode/DebugLog.h"
#include "simnode/HttpServer.h"
#include "simnode/NodeConfiguration.h"
#include "simnode/Scenario.h"
#include "simnode/Simulation.h"
#include "simnode/StreamServer.h"

#include <QObject>
#include <QTimer>

#include <chrono>
#include <memory>
#include <thread>
#include <vector>

namespace tidewick::sim {

/// The node as a process: opens its ports after a while, and ends on a command, on a signal or as
/// the scenario says. It ends the application's event loop, whose result is the exit status.
class Node final : public QObject
{
    Q_OBJECT

public:
    /// Opens the store; throws FileError. The log must outlive the node.
    Node(NodeConfiguration configuration, Scenario scenario, DebugLog &log);

    /// Returns at once; the rest happens from the event loop.
    void start();

private:
    void openPorts();
    bool openPort(const PortConfiguration &port);
    bool openHttp(const PortConfiguration &port, QString &error);
    bool openStream(const PortConfiguration &port, QString &error);
    void closePorts();

    Reply carryOut(const QString &command, const QJsonObject &request);
    void receiveSignal(int number);
    void beginStop();
    void leave(int status, std::chrono::milliseconds after);
    void takeCue(Scenario::Cue cue);
    void endAsScripted();
    void abortWithoutStore(const QString &text);

    NodeConfiguration m_configuration;
    Scenario m_scenario;
    DebugLog &m_log;
    SignalListener m_signals;
    Simulation m_simulation;
    std::vector<std::unique_ptr<HttpServer>> m_httpServers;
    std::vector<std::unique_ptr<StreamServer>> m_streamServers;
    std::jthread m_flood;
    QTimer m_openTimer;
    QTimer m_scriptTimer;
    QTimer m_closeTimer;
    QTimer m_exitTimer;
    int m_exitStatus = 0;
    bool m_stopping = false;
    bool m_signalled = false;
};

} // namespace tidewick::sim
