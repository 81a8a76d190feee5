// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "support/NodeRig.h"

#include "node/Probe.h"

#include <QElapsedTimer>
#include <QtTest>

#include <csignal>

#include <sys/wait.h>

namespace tidewick {

using namespace std::chrono_literals;

NodeRig::NodeRig() : m_portInUse([](quint16 port) { return Probe::portInUse(port, 300); })
{
    m_host.bundle = m_bundle.bundle();
    m_host.defaults = Defaults(m_folder.path() / "settings.ini");
    m_host.clock = m_clock;
    m_host.freeGB = [this](const auto &) { return m_freeGB; };
    m_host.portInUse = [this](quint16 port, qint32) { return m_portInUse(port); };
    m_host.spawn = [this](const ChildSpec &spec) { return spawn(spec); };
    m_node = std::make_unique<NodeController>(data(), m_host);
}

NodeRig::~NodeRig()
{
    m_node.reset();
    // Our children remain zombies until they are reaped, so their ids are not reused.
    for (const pid_t child : m_children) {
        if (::waitpid(child, nullptr, WNOHANG) == 0) {
            ::kill(child, SIGKILL);
            ::waitpid(child, nullptr, 0);
        }
    }
}

void NodeRig::setNode(std::filesystem::path executable, std::vector<std::string> arguments)
{
    m_otherNode.emplace(std::move(executable), std::move(arguments));
}

void NodeRig::setSandboxed()
{
    m_host.sandboxed = true;
    m_node = std::make_unique<NodeController>(data(), m_host);
}

std::unique_ptr<ChildProcess> NodeRig::spawn(const ChildSpec &spec)
{
    m_spawned.push_back(spec);
    ChildSpec changed = spec;
    changed.environment["TIDEWICK_SIMNODE"] = m_scenario.toStdString();
    if (m_otherNode)
        std::tie(changed.executable, changed.arguments) = *m_otherNode;
    auto child = ChildProcess::start(changed);
    m_children.push_back(child->id());
    return child;
}

/// Between two requests the controller waits for the clock. While it is stopping, its alarm is the
/// time limit after which it kills the node.
bool NodeRig::awaitsTheClock() const
{
    return m_clock->alarms() > 0 && !(m_node && status().phase == Phase::Stopping);
}

bool NodeRig::poll(const std::function<bool()> &condition, std::chrono::milliseconds fakeStep)
{
    constexpr qint64 ampleMs = 60'000;
    QElapsedTimer timer;
    timer.start();
    while (!condition()) {
        if (timer.hasExpired(ampleMs))
            return false;
        if (awaitsTheClock())
            m_clock->advance(fakeStep);
        QTest::qWait(5);
    }
    return true;
}

bool NodeRig::runUntil(const std::function<bool()> &condition)
{
    return poll(condition, 200ms);
}

bool NodeRig::waitUntil(const std::function<bool()> &condition)
{
    return poll(condition, 0ms);
}

bool NodeRig::waitForPhase(Phase phase)
{
    return runUntil([&] { return status().phase == phase; });
}

bool NodeRig::startUntil(Phase phase)
{
    const qsizetype before = timesUp();
    m_node->start();
    return waitUntil([&] { return timesUp() > before || !status().hasProcess; })
           && waitForPhase(phase);
}

/// How many nodes have reported so far that they are running. A stand-in child prints "ready".
qsizetype NodeRig::timesUp() const
{
    return m_otherNode ? log().count("ready\n") : noted("Application starting");
}

QByteArray NodeRig::log() const
{
    const std::filesystem::path path = data() / "xrpld.stdout.log";
    return std::filesystem::exists(path) ? contentOf(path) : QByteArray();
}

QByteArray NodeRig::debugLog() const
{
    const std::filesystem::path path = data() / "debug.log";
    return std::filesystem::exists(path) ? contentOf(path) : QByteArray();
}

} // namespace tidewick
