// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "faults/WatchedApplication.h"

#include "support/Processes.h"
#include "ui/menu/MenuRows.h"

#include <QtTest>

#include <algorithm>
#include <array>

namespace tidewick {

namespace {

using namespace std::chrono_literals;

constexpr std::chrono::milliseconds lookInterval = 20ms;
constexpr std::chrono::milliseconds onePoll = 2s;

constexpr auto phases =
    std::to_array({Phase::Stopped, Phase::Starting, Phase::Bootstrapping, Phase::Connecting,
                   Phase::Syncing, Phase::Full, Phase::Stopping, Phase::Error});

std::optional<Phase> phaseOf(const QByteArray &line)
{
    for (const Phase phase : phases) {
        const QByteArray title = phaseTitle(phase).toUtf8();
        if (line == title || line.startsWith(title + " · "))
            return phase;
    }
    return std::nullopt;
}

bool isWithoutNode(Phase phase)
{
    return phase == Phase::Stopped || phase == Phase::Error;
}

bool hasZombie(pid_t parent)
{
    const std::vector<pid_t> children = childrenOf(parent);
    // If it has been reaped in the meantime, it is not a zombie.
    return std::any_of(children.begin(), children.end(), [](pid_t child) {
        return !runs(child) && std::filesystem::exists("/proc/" + std::to_string(child));
    });
}

} // namespace

WatchedApplication::WatchedApplication(const TestBundle &bundle, const QByteArray &scenario,
                                       const ProcessEnvironment &variables, bool tellsPhase)
    : m_application(bundle, scenario, variables), m_tellsPhase(tellsPhase)
{
    QObject::connect(&m_timer, &QTimer::timeout, &m_timer, [this] { look(); });
    m_timer.start(lookInterval);
}

pid_t WatchedApplication::id()
{
    // At first, another child may be seen for a moment: the one that starts the watchdog process.
    const pid_t current = m_id != 0 && runs(m_id) ? 0 : m_application.application();
    if (current != 0)
        m_id = current;
    return m_id;
}

bool WatchedApplication::reaches(Phase phase)
{
    return waitUntil([&] {
        readPhase();
        return m_phase == phase;
    });
}

bool WatchedApplication::stays(Phase phase, std::chrono::milliseconds time)
{
    return !QTest::qWaitFor(
        [&] {
            readPhase();
            return m_phase != phase;
        },
        static_cast<int>(time.count()));
}

bool WatchedApplication::waitForNote(const QByteArray &event, qsizetype times)
{
    return waitUntil([&] { return LaunchedApplication::noted(event) >= times; });
}

void WatchedApplication::send(int signalNumber)
{
    m_toldToEnd |= signalNumber == SIGTERM || signalNumber == SIGINT || signalNumber == SIGHUP;
    process().send(signalNumber);
}

bool WatchedApplication::endsWell(int signalNumber)
{
    send(signalNumber);
    const bool ended = process().waitForEnd();
    readPhase();
    return ended && !process().ending()->signaled && process().ending()->status == 0
           && (!m_phase || isWithoutNode(*m_phase));
}

void WatchedApplication::readPhase()
{
    const QByteArray &told = output();
    for (qsizetype end = told.indexOf('\n', m_read); end >= 0; end = told.indexOf('\n', m_read)) {
        const QByteArray line = told.mid(m_read, end - m_read);
        m_read = end + 1;
        if (const auto phase = phaseOf(line)) {
            m_phase = phase;
            m_line = line;
        }
    }
}

void WatchedApplication::look()
{
    if (hasEnded()) {
        readPhase();
        m_timer.stop();
        return;
    }
    if (id() == 0)
        return;
    judge("a zombie is left", hasZombie(id()));
    if (!m_tellsPhase)
        return;
    readPhase();
    const bool runs = node().has_value();
    const bool tellsNode = m_phase && !isWithoutNode(*m_phase);
    judge("reports a node that does not run", tellsNode && !runs);
    judge("reports no node while one runs", m_phase && !tellsNode && runs);
    judge("does not stop its node", m_toldToEnd && runs && m_phase != Phase::Stopping);
}

void WatchedApplication::judge(const char *what, bool isWrong)
{
    if (!isWrong) {
        m_wrongSince.erase(what);
        return;
    }
    const std::chrono::nanoseconds now = ownTime();
    const auto since = m_wrongSince.try_emplace(what, now).first->second;
    if (now - since > onePoll && !m_wrongs.contains(what))
        m_wrongs += what;
}

/// A clock that does not advance while the application is waiting for a processor.
std::chrono::nanoseconds WatchedApplication::ownTime()
{
    return std::chrono::steady_clock::now().time_since_epoch() - keptWaiting(id());
}

} // namespace tidewick
