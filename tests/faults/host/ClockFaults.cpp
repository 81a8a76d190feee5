// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "faults/host/HostFaults.h"
#include "faults/host/HostTrial.h"
#include "platform/files/Defaults.h"
#include "support/NodeRig.h"
#include "support/PeakMemory.h"

#include <chrono>

namespace tidewick {

using namespace std::chrono_literals;

namespace {

constexpr auto year = 24h * 365;

QString hardCap()
{
    return QStringLiteral("autoStopHardCapMinutes");
}

QString afterFull()
{
    return QStringLiteral("autoStopAfterFullMinutes");
}

/// The environment of a program whose time of day is shifted as the file says. The clock of its
/// node is left alone, because the node closes ledgers by it.
ProcessEnvironment turnedBy(const FaultRun &run, const std::filesystem::path &file)
{
    const std::filesystem::path nodeEnvironment = run.bundle().resource("node.env");
    writeFile(nodeEnvironment, contentOf(nodeEnvironment) + "\nLD_PRELOAD=\n");
    return {{"LD_PRELOAD", preloadable(TIDEWICK_TURNED_CLOCK, file.parent_path())},
            {"TIDEWICK_CLOCK_TURN", file}};
}

/// The year according to a simple program under the shifted clock.
QByteArray yearTold(const ProcessEnvironment &variables)
{
    ChildSpec spec;
    spec.executable = "/bin/date";
    spec.arguments = {"+%Y"};
    for (const auto &[name, value] : variables)
        spec.environment[name] = value;
    return runProgram(std::move(spec)).output.trimmed();
}

/// The shift must not trigger a limit of one hour, nor shorten or lengthen any wait.
void tryTurned(FaultRun &run, std::chrono::seconds turn)
{
    if (PeakMemory::hasSanitizer)
        return run.skip("a sanitizer asks the clock in its own way");
    const std::filesystem::path file =
        std::filesystem::path(qgetenv("TMPDIR").toStdString()) / "turn";
    writeFile(file, "0");
    const ProcessEnvironment variables = turnedBy(run, file);
    Defaults::standard().setInteger(hardCap(), 60);

    const QByteArray before = yearTold(variables);
    WatchedApplication &application = run.launch("state=full", variables);
    run.expect(application.reaches(Phase::Full), "Full");
    writeFile(file, QByteArray::number(qint64{turn.count()}));
    run.expect(yearTold(variables) != before, "a different year");
    run.expectPolls(6);
    run.expect(application.reaches(Phase::Full), "Full throughout");
    run.expect(application.endsWell(), "the application ends with 0");
    run.expect(run.smoke("state=full", variables).status == 0, "--smoke gives 0");
    run.saw("from " + before + " to " + yearTold(variables) + ": " + application.lastLine());
    Defaults::standard().remove(hardCap());
}

QCoro::Task<> stop(NodeRig &rig, bool &answered)
{
    co_await rig.node().stopAndWait(QStringLiteral("Enough"));
    answered = true;
}

void expectStops(FaultRun &run, NodeRig &rig)
{
    bool answered = false;
    stop(rig, answered);
    run.expect(rig.runUntil([&] { return answered; }), "the stop to be answered");
    run.expect(rig.status().phase == Phase::Stopped, "Stopped");
}

void tryAsleepInFull(FaultRun &run)
{
    run.withoutNextStart();
    NodeRig rig;
    rig.defaults().setInteger(hardCap(), 60);
    rig.defaults().setInteger(afterFull(), 30);
    run.expect(rig.startUntil(Phase::Full), "Full");
    const qsizetype polls = rig.noted("server_info");
    rig.clock().sleep(8h);
    run.expect(rig.waitUntil([&] { return rig.noted("server_info") > polls; }),
               "a poll at once on waking");
    run.expect(rig.runUntil([&] { return rig.noted("server_info") > polls + 11; }),
               "polling to continue");
    run.expect(rig.status().phase == Phase::Full, "no limit to be reached");
    run.saw("after 8 h asleep: Full, time left "
            + rig.status().timeLeft.value_or(QString()).toUtf8());
    expectStops(run, rig);
}

void tryAsleepInStarting(FaultRun &run)
{
    run.withoutNextStart();
    NodeRig rig;
    rig.setScenario("speed=50 state=full start-delay=1");
    rig.defaults().setInteger(hardCap(), 60);
    rig.node().start();
    rig.clock().sleep(8h);
    run.expect(rig.status().phase == Phase::Starting, "Starting");
    run.expect(rig.waitForPhase(Phase::Full), "Full");
    run.saw("after 8 h asleep: Full");
    expectStops(run, rig);
}

void tryAsleepInStopping(FaultRun &run)
{
    run.withoutNextStart();
    NodeRig rig;
    rig.setScenario("speed=50 state=full stop=hang sigterm=ignore");
    run.expect(rig.startUntil(Phase::Full), "Full");
    bool answered = false;
    stop(rig, answered);
    run.expect(rig.waitUntil([&] { return rig.noted("RPCHandler:NFO stop") > 0; }), "a stop");
    run.expect(!answered && rig.status().phase == Phase::Stopping, "Stopping");
    rig.clock().sleep(8h);
    run.expect(rig.waitUntil([&] { return answered; }), "the node to be killed on waking");
    run.expect(rig.status().phase == Phase::Stopped, "Stopped");
    run.saw("after 8 h asleep: the node that hung was killed, the waiter answered");
}

} // namespace

std::vector<Fault> clockFaults()
{
    constexpr const char *regardless = "goes on; a limit of an hour is not met; ends with 0";
    return {{"time of day set forward by ten years", regardless,
             [](FaultRun &run) { tryTurned(run, 10 * year); }},
            {"time of day set back by ten years", regardless,
             [](FaultRun &run) { tryTurned(run, -10 * year); }},
            {"machine asleep in full", "asks at once on waking; sleep counts towards no limit",
             tryAsleepInFull},
            {"machine asleep while starting", "comes up", tryAsleepInStarting},
            {"machine asleep while a node hangs in stopping",
             "sleep counts towards the 90 s: killed on waking, the waiter answered",
             tryAsleepInStopping}};
}

} // namespace tidewick
