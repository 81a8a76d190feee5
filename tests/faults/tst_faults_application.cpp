// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "application/Desktop.h"
#include "application/TrayReader.h"
#include "application/XWindows.h"
#include "faults/FaultRun.h"
#include "faults/FaultTable.h"
#include "support/Processes.h"

#include <QElapsedTimer>

#include <csignal>

using namespace tidewick;
using namespace std::chrono_literals;

namespace {

/// The state of the program when the fault occurs.
struct Moment
{
    QByteArray name;
    QByteArray scenario;
    Phase phase;
};

const std::vector<Moment> moments{
    {"without a node", "exit=3", Phase::Error},
    {"while starting", "listen=no", Phase::Starting},
    {"while syncing", "state=syncing", Phase::Syncing},
    {"in full", "state=full", Phase::Full},
    {"while stopping", "state=full stop-delay=2", Phase::Stopping},
};

WatchedApplication &launchInto(FaultRun &run, const Moment &moment)
{
    WatchedApplication &application = run.launch(moment.scenario);
    // Before that, the signal that stops the node would kill it.
    if (moment.phase != Phase::Error)
        run.expectNoted("Application starting");
    if (moment.phase == Phase::Stopping) {
        run.expect(application.reaches(Phase::Full), "Full");
        application.send(SIGTERM);
        run.expectNoted("Server stopping");
    }
    run.expect(application.reaches(moment.phase), "the phase, unlike: " + application.lastLine());
    return application;
}

/// Expects the node, if there was one that had to close its store, to have closed it.
void expectNodeClosed(FaultRun &run, const Moment &moment)
{
    if (moment.phase == Phase::Error)
        return;
    run.expect(LaunchedApplication::noted("Done.") == 1, "the node has closed its store");
    run.expect(LaunchedApplication::noted("signal 15") <= 1, "one SIGTERM at most");
}

void isToldToEnd(FaultRun &run, const Moment &moment, int signalNumber)
{
    WatchedApplication &application = launchInto(run, moment);
    run.expect(application.endsWell(signalNumber), "it quits");
    expectNodeClosed(run, moment);
    run.saw(application.lastLine());
}

/// Expects the node to end soon after the program.
void expectNodeGone(FaultRun &run, pid_t node)
{
    QElapsedTimer timer;
    timer.start();
    run.expect(waitUntil([&] { return !runs(node); }) && !timer.hasExpired(aloneLimit.count()),
               "no node after 5 s");
    run.saw("no node after " + QByteArray::number(timer.elapsed()) + " ms");
}

void isKilled(FaultRun &run, const Moment &moment)
{
    WatchedApplication &application = launchInto(run, moment);
    const auto node = application.node();
    application.killBoth();
    run.expect(application.process().waitForEnd(), "the program ends");
    if (node)
        expectNodeGone(run, *node);
    else
        run.saw("no node");
    expectNodeClosed(run, moment);
}

void isLaunchedAgain(FaultRun &run, const Moment &moment)
{
    const SessionBus bus;
    WatchedApplication &first = launchInto(run, moment);
    const auto node = first.node();
    // Halts the node, so that the first program stays in its phase however long the second one
    // takes.
    if (moment.phase == Phase::Stopping && node)
        ::kill(*node, SIGSTOP);
    WatchedApplication &second = run.launch("state=full");
    run.expect(second.process().waitForEnd() && second.process().ending()->status == 1
                   && second.output().startsWith("Tidewick is already running"),
               "a message for the user who launches it, unlike: " + second.output());
    run.saw(second.output().trimmed());
    if (moment.phase == Phase::Stopping) {
        if (node)
            ::kill(*node, SIGCONT);
        return;
    }
    run.expect(first.phase() == moment.phase && first.node() == node, "the first is unchanged");
    run.expect(first.endsWell(), "it quits");
    expectNodeClosed(run, moment);
}

/// The second program is launched without waiting for the node of the first.
void isKilledAndLaunchedAtOnce(FaultRun &run)
{
    WatchedApplication &first = run.launchInFull("stop-delay=2");
    const auto node = first.node();
    first.killBoth();
    run.expect(first.process().waitForEnd(), "the program ends");
    WatchedApplication &second = run.launch("state=full");
    bool bothRun = false;
    run.expect(waitUntil([&] {
                   bothRun |= second.node() && node && runs(*node);
                   return second.phase() == Phase::Full;
               }),
               "Full without help, unlike: " + second.lastLine());
    run.expect(!bothRun, "never two nodes on the same store");
    run.saw(second.lastLine());
}

/// Measures in real time how long the watchdog process waits for the node.
void isKilledBeforeADeafNode(FaultRun &run)
{
    WatchedApplication &application = run.launchInFull("sigterm=ignore");
    const auto node = application.node();
    application.killBoth();
    run.expect(application.process().waitForEnd(), "the program ends");
    QElapsedTimer timer;
    timer.start();
    while (node && runs(*node) && !timer.hasExpired(120'000))
        waitUntil([&] { return !runs(*node); });
    run.expect(timer.elapsed() >= 89'000, "the node has time to close its store");
    run.saw("no node after " + QByteArray::number(timer.elapsed() / 1000) + " s");
}

void smokeIsKilled(FaultRun &run)
{
    Beside smoke([&] {
        ChildSpec spec;
        spec.executable = run.bundle().application();
        spec.arguments = {"--smoke"};
        spec.environment["TIDEWICK_SIMNODE"] = "listen=no";
        return spec;
    }());
    const auto log = applicationData().string() + "-smoke/debug.log";
    run.expect(waitUntil([&] {
                   return std::filesystem::exists(log)
                          && contentOf(log).contains("Application starting");
               }),
               "its node");
    smoke.send(SIGKILL);
    run.expect(smoke.waitForEnd(), "the program ends");
    run.expectNothingLeft();
    run.expect(contentOf(log).contains("Done."), "the node has closed its store");
    const Outcome next = run.smoke("state=full");
    run.expect(next.status == 0, "the next --smoke, unlike: " + next.output);
    run.saw(next.output.trimmed().split('\n').last());
}

/// The program then quits as if it had been told to.
void losesItsSupervisor(FaultRun &run)
{
    WatchedApplication &application = run.launchInFull("stop-delay=1");
    const auto node = application.node();
    application.send(SIGKILL);
    run.expect(application.process().waitForEnd(), "the launched process ends");
    if (run.expect(node.has_value(), "there was a node"))
        expectNodeGone(run, *node);
    run.expect(LaunchedApplication::noted("RPCHandler:NFO stop") == 1, "a stop by command");
    run.expect(LaunchedApplication::noted("Done.") == 1, "the node has closed its store");
    run.expect(waitUntil([&] { return !runs(application.id()); }), "the program ends");
}

void losesItsApplication(FaultRun &run)
{
    WatchedApplication &application = run.launchInFull("stop-delay=1");
    const auto node = application.node();
    application.signalApplication(SIGABRT); // sanitizers have handlers for others
    run.expect(application.process().waitForEnd(), "the launched process ends");
    run.expect(application.process().ending()->signaled
                   && application.process().ending()->status == SIGABRT,
               "the same signal");
    run.expect(node && !runs(*node), "the node has ended before");
    run.expect(LaunchedApplication::noted("Done.") == 1, "the node has closed its store");
    run.saw("ends by that signal after its node");
}

/// The watchdog process is the only process besides these and the node that the program starts.
void losesItsWatch(FaultRun &run)
{
    WatchedApplication &application = run.launchInFull();
    int killed = 0;
    for (const pid_t process : offspringOf(::getpid())) {
        if (process != application.id() && process != application.process().id()
            && process != application.node())
            killed += ::kill(process, SIGKILL) == 0 ? 1 : 0;
    }
    run.expect(killed == 1, "one watchdog process, unlike " + QByteArray::number(killed));
    run.expect(application.stays(Phase::Full, 3s), "Full all along");
    run.expect(application.endsWell(), "it quits");
    run.saw(application.lastLine());
}

/// As if a session ended by signalling all its processes. The node also gets a signal from
/// Tidewick; after two signals it may end without having closed its store.
void isToldWithItsNode(FaultRun &run, const Moment &moment)
{
    WatchedApplication &application = launchInto(run, moment);
    const auto node = application.node();
    if (!run.expect(node.has_value(), "there is a node"))
        return;
    ::kill(*node, SIGTERM);
    run.expect(application.endsWell(), "it quits");
    run.saw(application.lastLine());
}

void isHalted(FaultRun &run)
{
    WatchedApplication &application = run.launchInFull("when=usr1 exit=1");
    const auto node = application.node();
    application.signalApplication(SIGSTOP);
    ::kill(*node, SIGUSR1);
    run.expect(waitUntil([&] { return !runs(*node); }), "the node ends");
    application.signalApplication(SIGCONT);
    run.expect(application.reaches(Phase::Error), "Error");
    run.saw(application.lastLine());
}

void losesItsDisplay(FaultRun &run)
{
    auto display = std::make_unique<XServer>();
    WatchedApplication &application = run.launchOnDesktop("state=full");
    run.expectNoted("server_info");
    const auto node = application.node();
    display->process().send(SIGKILL);
    run.expect(application.process().waitForEnd() && !application.process().ending()->signaled
                   && application.process().ending()->status == 0,
               "the program ends with 0");
    if (run.expect(node.has_value(), "there was a node"))
        expectNodeGone(run, *node);
    run.expect(LaunchedApplication::noted("Done.") == 1, "the node has closed its store");
}

void losesTheBus(FaultRun &run)
{
    SessionBus bus;
    WatchedApplication &application = run.launchInFull();
    bus.process().send(SIGKILL);
    run.expect(bus.process().waitForEnd(), "the bus ends");
    run.expectPolls();
    run.expect(application.phase() == Phase::Full, "Full all along");
    run.expect(application.endsWell(), "it quits");
    run.saw(application.lastLine());
}

void hasNoBus(FaultRun &run)
{
    WatchedApplication &application =
        run.launch("state=full", {{"DBUS_SESSION_BUS_ADDRESS", "unix:path=/no/such/bus"}});
    run.expect(application.reaches(Phase::Full), "Full");
    run.expect(application.endsWell(), "it quits");
    run.saw(application.lastLine());
}

void hasABusThatHangs(FaultRun &run)
{
    SessionBus bus;
    WatchedApplication &application = run.launchInFull();
    bus.process().send(SIGSTOP);
    run.expectPolls();
    run.expect(application.phase() == Phase::Full, "Full all along");
    run.expect(application.endsWell(), "it quits");
    run.saw(application.lastLine());
    bus.process().send(SIGCONT);
}

/// The bus library would wait for the bus forever.
void isLaunchedWhereTheBusHangs(FaultRun &run)
{
    SessionBus bus;
    bus.process().send(SIGSTOP);
    WatchedApplication &application = run.launchInFull();
    run.expect(application.endsWell(), "it quits");
    run.saw(application.lastLine());
    bus.process().send(SIGCONT);
}

void losesTheTray(FaultRun &run)
{
    const SessionBus bus;
    const XServer display;
    auto panel = std::make_unique<DesktopPanel>();
    TrayReader reader(bus.connection());
    WatchedApplication &application = run.launchOnDesktop("state=full");
    const auto isInTrayAs = [&](const char *phase) {
        return waitUntil([&] {
            return reader.findItem() && reader.menu().value(0).text == QString::fromUtf8(phase);
        });
    };
    run.expect(isInTrayAs("Full"), "Full in the tray");
    panel->process().send(SIGKILL);
    run.expect(panel->process().waitForEnd(), "the tray ends");
    run.expect(waitUntil([] { return isWindowShown(QStringLiteral("Tidewick")); }),
               "the node panel in the meantime");
    panel = std::make_unique<DesktopPanel>();
    run.expect(isInTrayAs("Full"), "Full in the tray again");
    run.expect(waitUntil([] { return !isWindowShown(QStringLiteral("Tidewick")); }),
               "no node panel");
    run.expect(reader.click(QStringLiteral("Stop Node")) && isInTrayAs("Stopped"), "a stop");
    run.expect(reader.click(QStringLiteral("Quit")) && application.process().waitForEnd()
                   && application.process().ending()->status == 0,
               "it quits");
    run.saw("back in the tray, its commands work");
}

void addOthers(std::vector<Fault> &faults)
{
    faults.insert(
        faults.end(),
        {{"the program is killed and launched at once, its node taking 2 s to stop",
          "waits for that, then comes up", isKilledAndLaunchedAtOnce},
         {"the program is killed, its node ignores SIGTERM, real time", "killed after 90 s",
          isKilledBeforeADeafNode, true},
         {"--smoke is killed", "no node after 5 s; the next one passes", smokeIsKilled},
         {"the watchdog process is killed", "continues, quits", losesItsWatch},
         {"the supervisor is killed", "quits, its node stopped", losesItsSupervisor},
         {"the program crashes under its supervisor", "fails after its node has ended",
          losesItsApplication},
         {"the program is suspended while its node ends", "Error once it resumes", isHalted},
         {"the display dies", "ends; no node after 5 s", losesItsDisplay},
         {"the bus is killed", "continues, quits", losesTheBus},
         {"there is no bus at the given address", "comes up, quits", hasNoBus},
         {"the bus hangs", "continues, quits", hasABusThatHangs},
         {"the bus hangs before the launch", "comes up, if late; quits",
          isLaunchedWhereTheBusHangs},
         {"the tray is killed and restarts", "the item comes back and works", losesTheTray}});
}

std::vector<Fault> applicationFaults()
{
    std::vector<Fault> faults;
    for (const Moment &moment : moments) {
        for (const auto &[name, number] :
             {std::pair("SIGTERM", SIGTERM), std::pair("SIGINT", SIGINT),
              std::pair("SIGHUP", SIGHUP)}) {
            faults.push_back({QByteArray("the program gets ") + name + ' ' + moment.name,
                              "quits, its node stopped", [=, signalNumber = number](FaultRun &run) {
                                  isToldToEnd(run, moment, signalNumber);
                              }});
        }
        faults.push_back({"the program is killed " + moment.name,
                          "no node after 5 s, and the next start works without help",
                          [=](FaultRun &run) { isKilled(run, moment); }});
        if (moment.phase != Phase::Error) {
            faults.push_back({"the program and its node get SIGTERM at once " + moment.name,
                              "quits, no node left",
                              [=](FaultRun &run) { isToldWithItsNode(run, moment); }});
        }
        faults.push_back({"the program is launched again " + moment.name,
                          "one program, one node, a message to the user",
                          [=](FaultRun &run) { isLaunchedAgain(run, moment); }});
    }
    addOthers(faults);
    return faults;
}

} // namespace

int main(int argc, char *argv[])
{
    return runFaults("application", applicationFaults(), argc, argv);
}
