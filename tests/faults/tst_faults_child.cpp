// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "faults/FaultRun.h"
#include "faults/FaultTable.h"
#include "node/NodeLog.h"
#include "platform/process/ProcessMemory.h"
#include "support/NodeRig.h"
#include "support/Processes.h"

#include <QElapsedTimer>

#include <csignal>

using namespace tidewick;
using namespace std::chrono_literals;

namespace {

/// A way in which the node ends, and how the program reports it.
struct Ending
{
    QByteArray scenario;
    QByteArray told;
};

const std::vector<Ending> endings{
    {"exit=0", "exit status 0"}, {"exit=1", "exit status 1"}, {"signal=SEGV", "signal 11"},
    {"signal=ABRT", "signal 6"}, {"signal=KILL", "signal 9"}, {"signal=TERM", "signal 15"},
};

void signalNode(FaultRun &run, const WatchedApplication &application, int number)
{
    const auto node = application.node();
    if (run.expect(node.has_value(), "there is a node"))
        ::kill(*node, number);
}

void expectError(FaultRun &run, WatchedApplication &application, const QByteArray &told)
{
    run.expect(application.reaches(Phase::Error) && application.lastLine().contains(told),
               "Error with " + told + ", unlike: " + application.lastLine());
    run.saw(application.lastLine());
}

void expectSmokeFails(FaultRun &run, const QByteArray &scenario, const QByteArray &told,
                      const ProcessEnvironment &variables = {})
{
    const Outcome smoke = run.smoke(scenario, variables);
    run.expect(smoke.status == 1 && smoke.output.contains("smoke: FAIL")
                   && smoke.output.contains(told),
               "--smoke FAIL with " + told + ", unlike: " + smoke.output);
    run.saw("--smoke FAIL");
}

void endsBeforeListening(FaultRun &run, const Ending &ending)
{
    WatchedApplication &application = run.launch("lines=2 " + ending.scenario);
    expectError(run, application, ending.told);
    run.expect(waitUntil([&] { return application.output().contains("\nline 2\n"); }),
               "the node's last output");
    run.expect(application.endsWell(), "it quits");
    expectSmokeFails(run, ending.scenario, ending.told);
}

void endsWhileStarting(FaultRun &run, const Ending &ending)
{
    WatchedApplication &application = run.launch("listen=no when=usr1 " + ending.scenario);
    run.expectNoted("Application starting");
    run.expect(application.reaches(Phase::Starting), "Starting");
    signalNode(run, application, SIGUSR1);
    expectError(run, application, ending.told);
    run.expect(application.endsWell(), "it quits");
    expectSmokeFails(run, "listen=no after=0.5 " + ending.scenario, ending.told);
}

void endsInFull(FaultRun &run, const Ending &ending)
{
    WatchedApplication &application = run.launchInFull("when=usr1 " + ending.scenario);
    signalNode(run, application, SIGUSR1);
    expectError(run, application, ending.told);
    run.expect(application.endsWell(), "it quits");
    // It waits for a memory figure that does not arrive before the node ends.
    expectSmokeFails(run, "state=full process=no after=4 " + ending.scenario, ending.told,
                     {{"APP_SANDBOX_CONTAINER_ID", "x"}});
}

void endsWhileStopping(FaultRun &run, const Ending &ending)
{
    const QByteArray scenario = "state=full when=stop " + ending.scenario;
    WatchedApplication &application = run.launch(scenario);
    run.expect(application.reaches(Phase::Full), "Full");
    run.expect(application.endsWell(), "it quits");
    run.expect(application.reaches(Phase::Stopped) && application.lastLine().contains("Quitting"),
               "Stopped, unlike: " + application.lastLine());
    run.saw(application.lastLine());
    const Outcome smoke = run.smoke(scenario);
    run.expect(smoke.status == 0 && smoke.output.contains("smoke: ok"),
               "--smoke passes, unlike: " + smoke.output);
    run.saw("--smoke ok");
}

void addEndings(std::vector<Fault> &faults)
{
    for (const Ending &ending : endings) {
        const QByteArray error = "Error with " + ending.told + "; --smoke FAIL with it";
        const auto add = [&](const char *moment, const QByteArray &expected, auto trial) {
            faults.push_back({"the node ends (" + ending.scenario + ") " + moment, expected,
                              [=](FaultRun &run) { trial(run, ending); }});
        };
        add("before listening", error + ", what it printed last", endsBeforeListening);
        add("while starting", error, endsWhileStarting);
        add("in full", error, endsInFull);
        add("while stopping", "stopped as asked; --smoke ok", endsWhileStopping);
    }
}

void ignoresTheCommand(FaultRun &run)
{
    WatchedApplication &application = run.launchInFull("rpc.stop=silent");
    run.expect(application.endsWell(), "it quits");
    run.expect(LaunchedApplication::noted("signal 15") == 1, "one SIGTERM");
    run.saw(application.lastLine() + " after one SIGTERM");
    const Outcome smoke = run.smoke("state=full rpc.stop=silent");
    run.expect(smoke.status == 0, "--smoke passes, unlike: " + smoke.output);
}

/// Runs the whole program, in real time.
void ignoresEverything(FaultRun &run, const QByteArray &scenario, qsizetype signalsSeen)
{
    WatchedApplication &application = run.launch(scenario);
    run.expectNoted("Application starting");
    if (scenario.contains("state=full"))
        run.expect(application.reaches(Phase::Full), "Full");
    QElapsedTimer timer;
    timer.start();
    application.send(SIGTERM);
    constexpr qint64 limitMs = 90'000;
    while (!application.hasEnded() && timer.elapsed() < limitMs + 30'000)
        waitUntil([&] { return application.hasEnded(); });
    run.expect(application.hasEnded() && timer.elapsed() >= limitMs, "it ends after 90 s");
    run.expect(LaunchedApplication::noted("signal 15") == signalsSeen, "the signals expected");
    run.expect(contentOf(applicationData() / "xrpld.stdout.log").contains("sending SIGKILL"),
               "a note in the log");
    run.saw(application.lastLine() + " after " + QByteArray::number(timer.elapsed() / 1000) + " s");
}

QCoro::Task<> noteWhenStopped(NodeController &node, bool &isAnswered)
{
    co_await node.stopAndWait(QStringLiteral("Enough"));
    isAnswered = true;
}

/// Runs only the controller, on the fake clock. The child processes are real.
void isKilledInTheEnd(FaultRun &run, const QByteArray &scenario, bool isHalted)
{
    run.withoutNextStart(); // except the one with the rig below
    NodeRig rig;
    rig.setScenario("speed=50 state=full " + scenario);
    run.expect(rig.startUntil(Phase::Full), "Full");
    const pid_t node = rig.lastChild();
    if (isHalted)
        ::kill(node, SIGSTOP);
    bool isAnswered = false;
    noteWhenStopped(rig.node(), isAnswered);
    rig.clock().advance(90s - 1ns);
    run.expect(rig.status().hasProcess && !isAnswered, "the node is not killed earlier");
    rig.clock().advance(1ns);
    run.expect(rig.waitUntil([&] { return !rig.status().hasProcess; }), "the node ends");
    run.expect(isAnswered && rig.status().phase == Phase::Stopped, "the waiter is resumed");
    run.expect(!runs(node), "no node");
    run.expectNothingLeft();

    rig.setScenario("speed=50 state=full");
    run.expect(rig.startUntil(Phase::Full), "a new start");
    rig.node().stop();
    run.expect(rig.waitForPhase(Phase::Stopped), "a normal stop");
    run.saw("killed by the clock");
}

void leavesAGrandchild(FaultRun &run)
{
    WatchedApplication &application = run.launchInFull("grandchild=1000 when=usr1 exit=1");
    const QByteArray log = LaunchedApplication::debugLog();
    const qsizetype at = log.indexOf("grandchild ");
    const pid_t grandchild = log.mid(at + 11).split('\n')[0].toInt();
    if (!run.expect(at >= 0 && runs(grandchild), "there is a grandchild"))
        return;
    run.tolerate(grandchild);
    signalNode(run, application, SIGUSR1);
    expectError(run, application, "exit status 1");
    run.expect(application.endsWell(), "it quits");
    run.expect(runs(grandchild), "the grandchild is left alone");
}

/// Whether the process is stopped by a signal, and not a zombie.
bool isHalted(pid_t process)
{
    return contentOf("/proc/" + std::to_string(process) + "/stat").contains(") T ");
}

void haltedInFull(FaultRun &run)
{
    WatchedApplication &application = run.launchInFull();
    const auto node = application.node();
    if (!run.expect(node.has_value(), "there is a node"))
        return;
    ::kill(*node, SIGSTOP);
    run.expect(waitUntil([&] { return isHalted(*node); }), "the node is halted");
    // Long enough for one request that stays pending, and the next.
    run.expect(application.stays(Phase::Full, 7s) && application.node() == node, "still Full");
    ::kill(*node, SIGCONT);
    run.expectPolls();
    run.saw(application.lastLine());
}

void haltedWhileStopping(FaultRun &run)
{
    WatchedApplication &application = run.launchInFull("stop=hang");
    const auto node = application.node();
    if (!run.expect(node.has_value(), "there is a node"))
        return;
    application.send(SIGTERM);
    run.expectNoted("RPCHandler:NFO stop");
    ::kill(*node, SIGSTOP);
    run.expect(waitUntil([&] { return isHalted(*node); }), "the node is halted");
    run.expect(application.reaches(Phase::Stopping), "Stopping");
    ::kill(*node, SIGCONT);
    ::kill(*node, SIGTERM);
    run.expect(application.process().waitForEnd() && application.process().ending()->status == 0,
               "it quits");
    run.saw(application.lastLine());
}

void endsWhileQuitting(FaultRun &run)
{
    WatchedApplication &application = run.launchInFull();
    signalNode(run, application, SIGKILL);
    run.expect(application.endsWell(), "it quits");
    run.saw(application.lastLine());
}

void closesItsOutput(FaultRun &run)
{
    WatchedApplication &application = run.launchInFull("lines=3 streams=close when=usr1 exit=1");
    signalNode(run, application, SIGUSR1);
    expectError(run, application, "exit status 1");
    run.expect(waitUntil([&] { return application.output().contains("\nline 3\n"); }),
               "the node's last output");
}

void floodsTheLog(FaultRun &run)
{
    constexpr qint64 flood = 150'000'000;
    constexpr qint64 mostMemory = 20'000'000;
    WatchedApplication &application =
        run.launchInFull("when=usr1 exit=1 flood=" + QByteArray::number(flood));
    const auto before = ProcessMemory::of(application.id());
    const NodeLog log(applicationData());
    const auto size = [&] { return static_cast<qint64>(std::filesystem::file_size(log.path())); };
    run.expect(waitUntil([&] { return size() >= flood; }), "the whole output is in the log");
    signalNode(run, application, SIGUSR1);
    expectError(run, application, "exit status 1");
    run.expect(waitUntil([&] { return application.output().contains("output line 1499999.."); }),
               "the node's last output");
    const auto after = ProcessMemory::of(application.id());
    if (run.expect(before && after, "memory figures")) {
        const qint64 grown = after->peakFootprint - before->footprint;
        run.expect(grown < mostMemory, "little memory, unlike " + QByteArray::number(grown));
        run.saw("grown by " + QByteArray::number(grown / 1024) + " KiB");
    }
    run.expect(application.endsWell(), "it quits");
    run.launchInFull();
    run.expect(size() < 10'000
                   && std::filesystem::file_size(log.path().string() + ".1")
                          >= std::uintmax_t{flood},
               "the log is moved aside");
}

std::vector<Fault> childFaults()
{
    std::vector<Fault> faults;
    addEndings(faults);
    faults.insert(
        faults.end(),
        {{"the node ignores the command to stop", "stopped by one SIGTERM; --smoke ok",
          ignoresTheCommand},
         {"the node ignores SIGTERM while starting, real time", "killed after 90 s",
          [](FaultRun &run) { ignoresEverything(run, "listen=no sigterm=ignore", 1); }, true},
         {"the node ignores command and SIGTERM, real time", "killed after 90 s",
          [](FaultRun &run) {
              ignoresEverything(run, "state=full rpc.stop=silent sigterm=ignore", 1);
          },
          true},
         {"the node announces its stop, and does not stop, real time", "killed after 90 s",
          [](FaultRun &run) { ignoresEverything(run, "state=full stop=hang", 0); }, true},
         {"the node ignores command and SIGTERM, fake clock", "killed after 90 s",
          [](FaultRun &run) { isKilledInTheEnd(run, "rpc.stop=silent sigterm=ignore", false); }},
         {"the node announces its stop, and does not stop, fake clock", "killed after 90 s",
          [](FaultRun &run) { isKilledInTheEnd(run, "stop=hang", false); }},
         {"the node is suspended and told to stop, fake clock", "killed after 90 s",
          [](FaultRun &run) { isKilledInTheEnd(run, "", true); }},
         {"the node leaves a process that holds the log", "Error at once, and a new start",
          leavesAGrandchild},
         {"the node is suspended in full, and resumes", "Full all along", haltedInFull},
         {"the node is suspended while stopping, and resumes", "stopped as asked",
          haltedWhileStopping},
         {"the node is killed as the program quits", "quits", endsWhileQuitting},
         {"the node closes its output", "monitored as usual", closesItsOutput},
         {"the node floods its log with 150 MB",
          "little memory; the next start moves the log aside", floodsTheLog}});
    return faults;
}

} // namespace

int main(int argc, char *argv[])
{
    return runFaults("child", childFaults(), argc, argv);
}
