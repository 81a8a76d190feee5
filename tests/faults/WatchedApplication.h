// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include "application/LaunchedApplication.h"
#include "node/NodeStatus.h"

#include <QByteArrayList>
#include <QTimer>

#include <chrono>
#include <csignal>
#include <map>
#include <optional>

namespace tidewick {

/// The application under a fault. While the event loop runs, the phase it reports is compared with
/// the facts: whether its node is running, and whether it was asked to exit. It may be wrong for
/// the duration of one poll, not counting time during which other processes kept it off the
/// processors.
class WatchedApplication
{
public:
    /// With `tellsPhase`, the application runs on a terminal and reports its phase there; otherwise
    /// only its children are watched.
    WatchedApplication(const TestBundle &bundle, const QByteArray &scenario,
                       const ProcessEnvironment &variables, bool tellsPhase);

    Beside &process() { return m_application.process(); }
    const QByteArray &output() { return m_application.output(); }
    std::optional<pid_t> node() const { return m_application.node(); }
    /// The process of the application itself, also after its end; 0 before its beginning.
    pid_t id();

    /// The last reported phase, or nothing before the first report.
    std::optional<Phase> phase() const { return m_phase; }
    /// The line in which that phase was reported.
    QByteArray lastLine() const { return m_line; }

    /// Waits until the application is in this phase.
    [[nodiscard]] bool reaches(Phase phase);
    /// Whether the application stays in this phase for this long.
    [[nodiscard]] bool stays(Phase phase, std::chrono::milliseconds time);
    /// Waits until the node has logged this event in its debug log.
    [[nodiscard]] static bool waitForNote(const QByteArray &event, qsizetype times = 1);

    /// Sends a signal to the launched process, noting whether it asks the application to exit.
    void send(int signalNumber);
    /// Sends a signal to the application's own process.
    void signalApplication(int signalNumber) { m_application.signalApplication(signalNumber); }
    void killBoth() { m_application.killBoth(); }
    /// Asks the application to exit. Returns false if it does not exit with status 0 or if the last
    /// phase it reported still has a node.
    bool endsWell(int signalNumber = SIGTERM);
    bool hasEnded() { return process().ending().has_value(); }

    /// The states that were wrong for longer than the program may take to notice.
    const QByteArrayList &wrongs() const { return m_wrongs; }

private:
    void look();
    void readPhase();
    void judge(const char *what, bool isWrong);
    std::chrono::nanoseconds ownTime();

    LaunchedApplication m_application;
    pid_t m_id = 0;
    const bool m_tellsPhase;
    bool m_toldToEnd = false;
    QTimer m_timer;
    qsizetype m_read = 0;
    std::optional<Phase> m_phase;
    QByteArray m_line;
    /// When each wrong state began, by ownTime().
    std::map<const char *, std::chrono::nanoseconds> m_wrongSince;
    QByteArrayList m_wrongs;
};

} // namespace tidewick
