// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include "support/TestFiles.h"

#include <QByteArray>
#include <QJsonObject>
#include <QProcess>

#include <chrono>
#include <filesystem>

namespace tidewick {

/// A simulated node in a separate process with its own data folder. The process is killed if it
/// still runs when this object is destroyed.
class SimulatedNode
{
public:
    struct Ending
    {
        int number;
        bool signaled;

        bool operator==(const Ending &) const = default;
    };

    static constexpr std::chrono::seconds patience{10};

    /// Nodes that run at the same time need different numbers, which determine their ports.
    explicit SimulatedNode(quint16 number = 0);
    SimulatedNode(const SimulatedNode &) = delete;
    SimulatedNode &operator=(const SimulatedNode &) = delete;
    ~SimulatedNode();

    /// The configuration that start() writes.
    QByteArray configuration;

    quint16 rpcPort() const { return m_rpcPort; }
    quint16 streamPort() const { return m_streamPort; }
    const std::filesystem::path &folder() const { return m_folder.path(); }
    std::filesystem::path store() const { return folder() / "db"; }

    /// Starts the node with the configuration and this scenario.
    void start(const QByteArray &scenario = {});
    /// Starts the node with other arguments.
    void startWith(const QStringList &arguments, const QByteArray &scenario = {});

    /// Waits until both ports, which are opened one after the other, accept connections. Returns
    /// false if they do not in time.
    bool waitUntilOpen();
    /// Waits until the JSON-RPC port refuses connections.
    bool waitUntilRefused();
    /// Waits until the debug log contains this text.
    bool waitForLog(const QByteArray &text, std::chrono::milliseconds limit = patience);

    pid_t id() const { return static_cast<pid_t>(m_process.processId()); }
    void signal(int number) const;
    bool isRunning() const { return m_process.state() != QProcess::NotRunning; }
    Ending waitForEnd();

    /// The "result" of the node's answer to this method over HTTP; empty if there is none.
    QJsonObject ask(const QByteArray &method) const;

    QByteArray debugLog() const;
    QByteArray standardOutput() { return m_process.readAllStandardOutput(); }
    QByteArray standardError() { return m_process.readAllStandardError(); }

private:
    TemporaryFolder m_folder;
    quint16 m_rpcPort;
    quint16 m_streamPort;
    QProcess m_process;
};

/// For the messages of failed comparisons.
char *toString(const SimulatedNode::Ending &ending);

} // namespace tidewick
