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

/// The application under a fault. While the event loop turns, what it tells of its phase is held
/// against what is so: whether its node runs, and whether it was told to end. It may be wrong for
/// the time of one poll, in which what others on this machine took of the processors from it does
/// not count.
class WatchedApplication
{
public:
    /// One on a terminal tells its phase; of another only the children are watched.
    WatchedApplication(const TestBundle &bundle, const QByteArray &scenario,
                       const ProcessEnvironment &variables, bool tellsPhase);

    Beside &process() { return m_application.process(); }
    const QByteArray &output() { return m_application.output(); }
    std::optional<pid_t> node() const { return m_application.node(); }
    pid_t id() { return process().id(); }

    /// The phase it told last; nothing before the first.
    std::optional<Phase> phase() const { return m_phase; }
    /// The line it told that phase in.
    QByteArray lastLine() const { return m_line; }

    /// Waits until it is in this phase.
    [[nodiscard]] bool reaches(Phase phase);
    /// Whether it stays in this phase for so long.
    [[nodiscard]] bool stays(Phase phase, std::chrono::milliseconds time);
    /// Waits for what its node notes in its own log.
    [[nodiscard]] static bool waitForNote(const QByteArray &event, qsizetype times = 1);

    /// Sends it a signal. Those that tell it to end are known to do so.
    void send(int signalNumber);
    /// Tells it to end; false when it does not end with 0, having told that its node has ended.
    bool endsWell(int signalNumber = SIGTERM);
    bool hasEnded() { return process().ending().has_value(); }

    /// What was wrong for longer than the program may take to notice.
    const QByteArrayList &wrongs() const { return m_wrongs; }

private:
    void look();
    void readPhase();
    void judge(const char *what, bool isWrong);
    std::chrono::nanoseconds ownTime();

    LaunchedApplication m_application;
    const bool m_tellsPhase;
    bool m_toldToEnd = false;
    QTimer m_timer;
    qsizetype m_read = 0;
    std::optional<Phase> m_phase;
    QByteArray m_line;
    /// Since when something is wrong, in its own time.
    std::map<const char *, std::chrono::nanoseconds> m_wrongSince;
    QByteArrayList m_wrongs;
};

} // namespace tidewick
