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

/// A node controller in surroundings that a test controls: clocks, free space, bundle, data folder,
/// and the scenario of the simulated node it runs. Child processes and HTTP are real. Kills any
/// children left over when it is destroyed.
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

    /// Sets the scenario of the simulated node, in the syntax of TIDEWICK_SIMNODE. Takes effect at
    /// the next start.
    void setScenario(const QByteArray &scenario) { m_scenario = scenario; }
    /// Runs this program with these arguments as the node. Takes effect at the next start.
    void setNode(std::filesystem::path executable, std::vector<std::string> arguments);
    void setFreeGB(std::optional<double> freeGB) { m_freeGB = freeGB; }
    void setPortInUse(std::function<bool(quint16)> portInUse)
    {
        m_portInUse = std::move(portInUse);
    }
    void setSandboxed();

    /// The children started so far, as the controller requested them.
    const std::vector<ChildSpec> &spawned() const { return m_spawned; }
    pid_t lastChild() const { return m_children.back(); }

    /// Advances fake time, forty times as fast as real time, until the condition holds. Returns
    /// false if it does not hold within a generous real time. The clocks stand still while a
    /// request to the node is pending or the node is stopping, so that real delays do not become
    /// fake minutes.
    [[nodiscard]] bool runUntil(const std::function<bool()> &condition);
    /// Like runUntil(), but with the fake clocks standing still.
    [[nodiscard]] bool waitUntil(const std::function<bool()> &condition);
    [[nodiscard]] bool waitForPhase(Phase phase);

    /// Starts the node, waits with the clocks standing still until it has come up, and then
    /// advances time until it reaches this phase.
    [[nodiscard]] bool startUntil(Phase phase);

    QByteArray log() const;
    QByteArray debugLog() const;
    /// How often the node has logged this event in its debug log.
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
