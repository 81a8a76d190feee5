// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include "faults/WatchedApplication.h"
#include "support/PeakMemory.h"
#include "support/RunProgram.h"
#include "support/TestBundle.h"

#include <QByteArrayList>

#include <memory>
#include <set>
#include <vector>

namespace tidewick {

/// How long a node may be there after its program was killed. A sanitizer makes both slow.
constexpr std::chrono::milliseconds aloneLimit(PeakMemory::hasSanitizer ? 30'000 : 5'000);

/// The trial of one fault, in a process of its own: what it runs is this process's offspring,
/// orphans included. It begins with a choice in the settings and a ledger in the node's store.
///
/// A trial for the whole program reads:
///
///     WatchedApplication &application = run.launchInFull();
///     ... the fault ...
///     run.expect(application.reaches(Phase::Error), "Error");
///     run.saw(application.lastLine());
///
/// It may make a SessionBus, an XServer, a DesktopPanel first, a NodeRig where only its clocks can
/// show the fault, and has to undo what a person would have to undo, such as a full disk.
///
/// conclude() then checks what holds after every fault: each application that still runs ends with
/// status 0 when it is told to (a stop is always answered); none was in a wrong phase for longer
/// than one poll, or left a zombie; no process is left; settings, store and configuration are there
/// and can be read; the application, launched anew, has its node in sync without any hand.
class FaultRun
{
public:
    FaultRun();
    ~FaultRun();
    FaultRun(const FaultRun &) = delete;
    FaultRun &operator=(const FaultRun &) = delete;

    const TestBundle &bundle() const { return m_bundle; }

    /// The scenario of a node that runs at fifty times speed, writes little and never rebuilds its
    /// store, if what is added says nothing else.
    static QByteArray scenarioWith(const QByteArray &more);

    /// The application where there is no display, its phase watched. The scenario is what is added
    /// for its node. Without a bus, unless the trial has made one.
    WatchedApplication &launch(const QByteArray &scenario,
                               const ProcessEnvironment &variables = {});

    /// The same, its node in sync by then.
    WatchedApplication &launchInFull(const QByteArray &scenario = {});

    /// The application on the XServer of the trial, where its phase is not watched.
    WatchedApplication &launchOnDesktop(const QByteArray &scenario,
                                        const ProcessEnvironment &variables = {});

    /// Runs "--smoke" to its end.
    Outcome smoke(const QByteArray &scenario, const ProcessEnvironment &variables = {});

    /// Notes what has happened, for the row.
    void saw(const QByteArray &what) { m_seen += what; }
    /// Notes what should have happened if it has not, and answers whether it has.
    bool expect(bool holds, const QByteArray &what);
    /// Expects that the node notes an event in its own log, for which it waits.
    bool expectNoted(const QByteArray &event);
    /// Expects that the node is asked so many times more.
    bool expectPolls(qsizetype times = 2);
    /// The fault cannot be brought about on this machine; the row then has no verdict.
    void skip(const QByteArray &why) { m_skipped = why; }

    /// A process that is to be left at the end, such as a grandchild. It is killed then.
    void tolerate(pid_t process) { m_tolerated.insert(process); }

    /// Waits until none of the offspring is left but those tolerated and the bare helpers of the
    /// trial that still are to end with their objects.
    void expectNothingLeft(const std::set<pid_t> &helpers = {});

    /// There is nothing to start anew, as in a trial of parts of the program.
    void withoutNextStart() { m_startsAnew = false; }

    void conclude();

    bool holds() const { return m_missed.isEmpty(); }
    bool isSkipped() const { return !m_skipped.isEmpty(); }
    /// What was seen, or what should have been, for the row.
    QByteArray report() const;
    /// The transcripts of what ran, for who looks into a failure.
    QByteArray details();

private:
    WatchedApplication &launchWith(const QByteArray &scenario, ProcessEnvironment variables,
                                   bool isWatched);
    void expectToldToEnd(WatchedApplication &application);
    void expectDataKept();
    void expectNextStart();

    TemporaryFolder m_runtime;
    TestBundle m_bundle;
    std::vector<std::unique_ptr<WatchedApplication>> m_applications;
    std::set<pid_t> m_tolerated;
    bool m_startsAnew = true;
    QByteArrayList m_seen;
    QByteArrayList m_missed;
    QByteArray m_skipped;
};

/// Everything below a process, and what it has become an ancestor of by others' ends.
std::set<pid_t> offspringOf(pid_t process);

} // namespace tidewick
