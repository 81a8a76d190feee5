// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include "node/NodeController.h"
#include "support/FakeClock.h"
#include "support/TestBundle.h"

#include <functional>
#include <memory>
#include <vector>

namespace tidewick {

/// A controller with surroundings that a test can turn: clocks, free space, bundle, data folder and
/// the scenario of the simulated node it runs. Children and HTTP are real. Whatever is left of its
/// children at the end is killed.
class NodeRig
{
public:
    NodeRig();
    ~NodeRig();

    NodeController &node() { return *m_node; }
    const NodeStatus &status() const { return m_node->status(); }
    void destroyNode() { m_node.reset(); }

    FakeClock &clock() { return *m_clock; }
    TestBundle &bundle() { return m_bundle; }
    Defaults defaults() const { return m_host.defaults; }
    const NodeHost &host() const { return m_host; }
    std::filesystem::path data() const { return m_folder.path() / "Tidewick"; }

    /// What the node is to do, as TIDEWICK_SIMNODE says it; for the next start.
    void setScenario(const QByteArray &scenario) { m_scenario = scenario; }
    /// Runs this program with these arguments as the node; for the next start.
    void setNode(std::filesystem::path executable, std::vector<std::string> arguments);
    void setFreeGB(std::optional<double> freeGB) { m_freeGB = freeGB; }
    void setPortInUse(std::function<bool(quint16)> portInUse)
    {
        m_portInUse = std::move(portInUse);
    }
    void setSandboxed();

    /// What was started so far, as the controller asked for it.
    const std::vector<ChildSpec> &spawned() const { return m_spawned; }
    pid_t lastChild() const { return m_children.back(); }

    /// Lets fake time pass, forty times as fast as real time, until the condition holds. False when
    /// it does not within a real time that is ample. While a question to the node is open or the
    /// node is stopping, the clocks stand still: real delays do not become fake minutes.
    [[nodiscard]] bool runUntil(const std::function<bool()> &condition);
    /// The same with the fake clocks standing still.
    [[nodiscard]] bool waitUntil(const std::function<bool()> &condition);
    [[nodiscard]] bool waitForPhase(Phase phase);

    /// Starts the node, waits with the clocks standing still until it has come up, and lets time
    /// pass until it is in this phase.
    [[nodiscard]] bool startUntil(Phase phase);

    QByteArray log() const;
    QByteArray debugLog() const;
    /// How often the node has noted this event in its own log.
    qsizetype noted(const QByteArray &event) const { return debugLog().count(event); }

private:
    std::unique_ptr<ChildProcess> spawn(const ChildSpec &spec);
    bool poll(const std::function<bool()> &condition, std::chrono::milliseconds fakeStep);
    bool awaitsTheClock() const;
    qsizetype timesUp() const;

    TemporaryFolder m_folder;
    TestBundle m_bundle;
    std::shared_ptr<FakeClock> m_clock = std::make_shared<FakeClock>();
    QByteArray m_scenario = "speed=50 state=full";
    std::optional<std::pair<std::filesystem::path, std::vector<std::string>>> m_otherNode;
    std::optional<double> m_freeGB = 100;
    std::function<bool(quint16)> m_portInUse;
    std::vector<ChildSpec> m_spawned;
    std::vector<pid_t> m_children;
    NodeHost m_host;
    std::unique_ptr<NodeController> m_node;
};

} // namespace tidewick
