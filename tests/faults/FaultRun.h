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

/// How long a node may outlive its killed program. A sanitizer slows both down.
constexpr std::chrono::milliseconds aloneLimit(PeakMemory::hasSanitizer ? 30'000 : 5'000);

/// The trial of one fault, in a separate process: everything it runs, including orphans, is a
/// descendant of this process. It begins with one changed setting and one ledger in the node's
/// store.
///
/// A trial for the whole program reads:
///
///     WatchedApplication &application = run.launchInFull();
///     ... the fault ...
///     run.expect(application.reaches(Phase::Error), "Error");
///     run.saw(application.lastLine());
///
/// A trial may first create a SessionBus, an XServer or a DesktopPanel, or a NodeRig if only fake
/// clocks can show the fault. It has to undo what a user would have to undo, such as a full disk.
///
/// Afterwards conclude() checks the invariants: every application still running exits with status 0
/// when asked to (a stop is always answered); none showed a wrong phase for longer than one poll or
/// left a zombie; no process is left over; settings, store and configuration exist and can be read;
/// and a newly launched application brings its node in sync without help.
class FaultRun
{
public:
    FaultRun();
    ~FaultRun();
    FaultRun(const FaultRun &) = delete;
    FaultRun &operator=(const FaultRun &) = delete;

    const TestBundle &bundle() const { return m_bundle; }

    /// The scenario of a node that runs at fifty times normal speed, writes little and never
    /// rebuilds its store, unless the appended settings override this.
    static QByteArray scenarioWith(const QByteArray &more);

    /// Launches the application without a display and watches its phase. `scenario` is appended to
    /// the scenario of its node. There is no bus unless the trial has created one.
    WatchedApplication &launch(const QByteArray &scenario,
                               const ProcessEnvironment &variables = {});

    /// Like launch(), but waits until the node is in sync.
    WatchedApplication &launchInFull(const QByteArray &scenario = {});

    /// Launches the application on the trial's XServer, without watching its phase.
    WatchedApplication &launchOnDesktop(const QByteArray &scenario,
                                        const ProcessEnvironment &variables = {});

    /// Runs "--smoke" until it exits.
    Outcome smoke(const QByteArray &scenario, const ProcessEnvironment &variables = {});

    /// Records an observation for the row.
    void saw(const QByteArray &what) { m_seen += what; }
    /// Records the expectation as missed if it does not hold. Returns whether it holds.
    bool expect(bool holds, const QByteArray &what);
    /// Waits for an event in the node's debug log, and expects it to appear.
    bool expectNoted(const QByteArray &event);
    /// Expects the node to be polled this many more times.
    bool expectPolls(qsizetype times = 2);
    /// Records that the fault cannot be produced on this machine; the row then has no verdict.
    void skip(const QByteArray &why) { m_skipped = why; }

    /// Permits a process, such as a grandchild, to be left at the end. It is then killed.
    void tolerate(pid_t process) { m_tolerated.insert(process); }

    /// Waits until no descendants are left except the tolerated ones and those helpers of the trial
    /// that end with their objects.
    void expectNothingLeft(const std::set<pid_t> &helpers = {});

    /// Skips the start after the trial, for trials that use only parts of the program.
    void withoutNextStart() { m_startsAnew = false; }

    void conclude();

    bool holds() const { return m_missed.isEmpty(); }
    bool isSkipped() const { return !m_skipped.isEmpty(); }
    /// The observations and the missed expectations, for the row.
    QByteArray report() const;
    /// The output of everything that ran, for investigating a failure.
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

/// All descendants of a process, including orphans that it has adopted.
std::set<pid_t> offspringOf(pid_t process);

} // namespace tidewick
