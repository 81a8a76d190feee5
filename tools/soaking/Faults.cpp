// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "Faults.h"

#include <QtTest>

#include <array>
#include <csignal>
#include <cstdio>

namespace tidewick::soaking {

namespace {

/// Scenarios of nodes that misbehave. All of these nodes can be killed.
constexpr std::array badNodes{
    "exit=3",
    "signal=SEGV after=2",
    "listen=no",
    "start-delay=3",
    "output=3000000",
    "counts=plain",
    "txns=1500-2500",
    "ledger-interval=1",
    "rpc=silent rpc-after=1",
    "rpc=unread rpc-after=1",
    "rpc=garbage rpc-after=1",
    "rpc=half rpc-after=1",
    "rpc=reset",
    "rpc=drip rpc-after=1",
    "rpc=huge-chunked",
    "rpc=deep",
    "rpc=wrong-types",
    "rpc=close",
    "rpc=503",
};

} // namespace

template <typename Choices>
const auto &Faults::oneOf(const Choices &choices)
{
    return choices[std::uniform_int_distribution<std::size_t>(0, choices.size() - 1)(m_random)];
}

void Faults::wait(int leastMs, int mostMs)
{
    QTest::qWait(std::uniform_int_distribution(leastMs, mostMs)(m_random));
}

void Faults::strike()
{
    using Fault = std::pair<const char *, void (Faults::*)()>;
    static constexpr std::array faults{
        Fault{"node ended", &Faults::endNode},
        Fault{"node stopped and continued", &Faults::freezeNode},
        Fault{"bad node", &Faults::runBadNode},
        Fault{"bad node", &Faults::runBadNode},
        Fault{"Stop and Start", &Faults::stopAndStart},
        Fault{"stream dropped", &Faults::dropStream},
        Fault{"window closed", &Faults::closeLedger},
        Fault{"second launch", &Faults::launchAgain},
        Fault{"tray host restarted", &Faults::restartPanel},
    };
    const auto &[name, fault] = oneOf(faults);
    ++m_counts[name];
    std::fprintf(stderr, "%s\n", name);
    (this->*fault)();
}

void Faults::endNode()
{
    constexpr std::array deadly{SIGKILL, SIGTERM, SIGABRT, SIGSEGV, SIGHUP};
    ::kill(*m_subject.node(), oneOf(deadly));
    wait(0, 3'000);
}

void Faults::freezeNode()
{
    const pid_t node = *m_subject.node();
    ::kill(node, SIGSTOP);
    wait(500, 12'000);
    ::kill(node, SIGCONT);
}

void Faults::runBadNode()
{
    const char *scenario = oneOf(badNodes);
    std::fprintf(stderr, "  %s\n", scenario);
    m_subject.press("Stop Node");
    m_subject.setScenario(scenario);
    m_subject.press("Start Node");
    wait(2'000, 8'000);
    m_subject.resetScenario();
    if (const auto node = m_subject.node())
        ::kill(*node, SIGKILL);
    wait(0, 1'000);
}

void Faults::stopAndStart()
{
    m_subject.press("Stop Node");
    wait(0, 2'000);
    m_subject.press("Start Node");
}

void Faults::dropStream()
{
    m_subject.dropStream();
    wait(0, 2'000);
}

void Faults::closeLedger()
{
    m_subject.closeLedger();
    wait(0, 3'000);
}

void Faults::launchAgain()
{
    m_subject.launchAgain();
}

void Faults::restartPanel()
{
    m_subject.restartPanel();
}

} // namespace tidewick::soaking
