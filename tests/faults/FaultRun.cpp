// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "faults/FaultRun.h"

#include "platform/files/Defaults.h"
#include "simnode/Store.h"
#include "support/Processes.h"

#include <QDeadlineTimer>

#include <csignal>
#include <fstream>

#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

namespace tidewick {

namespace fs = std::filesystem;

namespace {

constexpr quint32 oldLedger = 1'000'000;
/// A setting chosen by the user, with an unusual value that nothing else would produce.
constexpr const char *settingName = "roundGrowthMiB";
constexpr qint64 settingValue = 1537;

QString setting()
{
    return QString::fromLatin1(settingName);
}

fs::path storeFolder()
{
    return applicationData() / "db";
}

} // namespace

std::set<pid_t> offspringOf(pid_t process)
{
    std::set<pid_t> all;
    std::error_code error;
    for (const fs::directory_entry &task :
         fs::directory_iterator("/proc/" + std::to_string(process) + "/task", error)) {
        std::ifstream children(task.path() / "children");
        pid_t child = 0;
        while (children >> child) {
            if (!all.insert(child).second)
                continue;
            all.merge(offspringOf(child));
        }
    }
    return all;
}

FaultRun::FaultRun()
{
    qputenv("XDG_RUNTIME_DIR", QByteArray::fromStdString(m_runtime.path().string()));
    qunsetenv("DBUS_SESSION_BUS_ADDRESS");
    for (const char *variable : {"DISPLAY", "WAYLAND_DISPLAY", "QT_QPA_PLATFORM"})
        qunsetenv(variable);
    Defaults::standard().setInteger(setting(), settingValue);
    sim::Store(storeFolder()).append(oldLedger);
}

FaultRun::~FaultRun()
{
    for (const pid_t process : m_tolerated)
        ::kill(process, SIGKILL);
}

QByteArray FaultRun::scenarioWith(const QByteArray &more)
{
    // Rebuilding the store would drop the ledger that it contained before.
    return "speed=50 ledger-interval=200 maintenance=waiting " + more;
}

WatchedApplication &FaultRun::launch(const QByteArray &scenario,
                                     const ProcessEnvironment &variables)
{
    return launchWith(scenario, variables, true);
}

WatchedApplication &FaultRun::launchInFull(const QByteArray &scenario)
{
    WatchedApplication &application = launch("state=full " + scenario);
    expect(application.reaches(Phase::Full), "Full, unlike: " + application.lastLine());
    return application;
}

WatchedApplication &FaultRun::launchOnDesktop(const QByteArray &scenario,
                                              const ProcessEnvironment &variables)
{
    return launchWith(scenario, variables, false);
}

WatchedApplication &FaultRun::launchWith(const QByteArray &scenario, ProcessEnvironment variables,
                                         bool isWatched)
{
    if (isWatched)
        variables.insert({{"DISPLAY", ""}, {"WAYLAND_DISPLAY", ""}});
    m_applications.push_back(std::make_unique<WatchedApplication>(m_bundle, scenarioWith(scenario),
                                                                  variables, isWatched));
    return *m_applications.back();
}

Outcome FaultRun::smoke(const QByteArray &scenario, const ProcessEnvironment &variables)
{
    ChildSpec spec;
    spec.executable = m_bundle.application();
    spec.arguments = {"--smoke"};
    spec.environment["TIDEWICK_SIMNODE"] = scenarioWith(scenario).toStdString();
    for (const auto &[name, value] : variables)
        spec.environment[name] = value;
    return runProgram(std::move(spec));
}

bool FaultRun::expect(bool holds, const QByteArray &what)
{
    if (!holds)
        m_missed += what;
    return holds;
}

bool FaultRun::expectNoted(const QByteArray &event)
{
    return expect(WatchedApplication::waitForNote(event), '"' + event + "\" in the node's log");
}

bool FaultRun::expectPolls(qsizetype times)
{
    const qsizetype before = LaunchedApplication::noted("server_info");
    return expect(WatchedApplication::waitForNote("server_info", before + times),
                  "polling continues");
}

void FaultRun::expectToldToEnd(WatchedApplication &application)
{
    if (!application.hasEnded())
        expect(application.endsWell(), "the application exits when asked to");
    for (const QByteArray &wrong : application.wrongs())
        expect(false, "for no longer than one poll: " + wrong);
}

void FaultRun::expectNothingLeft(const std::set<pid_t> &helpers)
{
    const auto left = [&] {
        std::vector<pid_t> processes;
        for (const pid_t process : offspringOf(::getpid())) {
            if (m_tolerated.contains(process) || helpers.contains(process))
                continue;
            // Orphans become children of this process, which does not learn of their end in any
            // other way.
            if (runs(process))
                processes.push_back(process);
        }
        return processes;
    };
    const QDeadlineTimer deadline(aloneLimit);
    std::vector<pid_t> processes = left();
    while (!processes.empty() && !deadline.hasExpired()) {
        waitForEnd(processes.front(), std::chrono::milliseconds(deadline.remainingTime()));
        processes = left();
    }
    for (const pid_t process : processes)
        expect(false, "no process is left, unlike " + QByteArray::number(process));
}

void FaultRun::expectDataKept()
{
    Defaults defaults = Defaults::standard();
    defaults.refresh();
    expect(defaults.integer(setting()) == settingValue, "the settings are kept");
    try {
        const auto newest = sim::Store(storeFolder()).newestLedger();
        expect(newest && *newest >= oldLedger, "the store is kept");
    } catch (const FileError &error) {
        expect(false, QByteArray("the store can be read, unlike ") + error.what());
    }
}

void FaultRun::expectNextStart()
{
    WatchedApplication &next = launch("state=full");
    expect(next.reaches(Phase::Full), "the next start comes up, unlike: " + next.lastLine());
    expectToldToEnd(next);
    expectNothingLeft();
    expectDataKept();
    expect(contentOf(applicationData() / "xrpld.cfg").contains(QByteArray::number(settingValue)),
           "the configuration follows the settings");
}

void FaultRun::conclude()
{
    for (const auto &application : m_applications)
        expectToldToEnd(*application);
    expectNothingLeft();
    if (isSkipped())
        return;
    expectDataKept();
    if (m_startsAnew)
        expectNextStart();
}

QByteArray FaultRun::report() const
{
    if (isSkipped())
        return m_skipped;
    QByteArrayList all = m_seen;
    for (const QByteArray &missed : m_missed)
        all += "MISSED " + missed;
    return all.join("; ");
}

QByteArray FaultRun::details()
{
    QByteArray text;
    for (const auto &application : m_applications)
        text += "--- an application\n" + application->output();
    const QByteArray log = LaunchedApplication::debugLog();
    return text + "--- its node\n" + log.right(4096);
}

} // namespace tidewick
