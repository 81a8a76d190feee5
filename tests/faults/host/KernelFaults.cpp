// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "faults/host/HostFaults.h"
#include "faults/host/HostTrial.h"
#include "support/PeakMemory.h"

#include <array>
#include <csignal>

#include <fcntl.h>
#include <sched.h>
#include <sys/mount.h>
#include <sys/resource.h>

namespace tidewick {

using namespace std::chrono_literals;

namespace {

/// Hides /proc from all processes started while the object exists. Its destruction restores /proc
/// for this process.
class WithoutProc
{
public:
    explicit WithoutProc(FaultRun &run)
    {
        // Only mounts in a namespace owned by this user can be returned to.
        if (!enterPrivateMounts(run))
            return;
        m_mounts = UniqueDescriptor(::open("/proc/self/ns/mnt", O_RDONLY | O_CLOEXEC));
        m_hidden = enterPrivateMounts(run)
                   && run.expect(::mount("none", "/proc", "tmpfs", MS_RDONLY, nullptr) == 0,
                                 "an empty /proc");
    }
    WithoutProc(const WithoutProc &) = delete;
    WithoutProc &operator=(const WithoutProc &) = delete;
    ~WithoutProc()
    {
        if (m_hidden && ::setns(m_mounts.get(), CLONE_NEWNS) != 0)
            qFatal("Cannot return to the previous mounts");
    }

    bool isHidden() const { return m_hidden; }

private:
    UniqueDescriptor m_mounts;
    bool m_hidden = false;
};

void tryWithoutProc(FaultRun &run)
{
    WatchedApplication *application = nullptr;
    {
        const WithoutProc without(run);
        if (!without.isHidden())
            return;
        application = &run.launch("state=full");
        run.expect(runMode(run, {"--render-config", "-"}).status == 0, "--render-config gives 0");
        run.expect(runMode(run, {"--node-version"}).status == 0, "--node-version gives 0");
    }
    run.expect(application->reaches(Phase::Full), "Full");
    run.saw(application->lastLine());
    run.expect(application->endsWell(), "the application ends with 0");
}

/// The node's memory use cannot be determined; "--smoke" waits a minute for it.
void tryToSmokeWithoutProc(FaultRun &run)
{
    {
        const WithoutProc without(run);
        if (!without.isHidden())
            return;
        const Outcome smoke = run.smoke("state=full");
        run.expect(smoke.status == 0, "--smoke gives 0, unlike: " + smoke.output);
    }
    run.saw("--smoke: 0");
}

/// The command that runs the program with this many descriptors and without a display.
ChildSpec withDescriptors(const FaultRun &run, int count, const std::string &arguments = {})
{
    ChildSpec spec;
    spec.executable = "/bin/sh";
    spec.arguments = {"-c", "ulimit -n " + std::to_string(count) + "; exec \"$0\" " + arguments,
                      run.bundle().application()};
    spec.environment["TIDEWICK_SIMNODE"] = FaultRun::scenarioWith("state=full").toStdString();
    for (const char *variable : {"DISPLAY", "WAYLAND_DISPLAY"})
        spec.environment.erase(variable);
    return spec;
}

/// From the minimum needed to load the program to enough for everything.
constexpr std::array descriptorCounts{4, 5, 6, 7, 8, 10, 12, 14, 16, 20, 24, 32, 40, 64};

/// The way in which a program that could not do its work ended.
QByteArray ending(const ChildProcess::Ending &ending)
{
    return (ending.signaled ? "signal " : "status ") + QByteArray::number(ending.status);
}

void tryToStartWithFew(FaultRun &run, int count, int &cameUp)
{
    const QByteArray few = QByteArray::number(count) + " descriptors: ";
    Beside application(withDescriptors(run, count));
    run.expect(waitUntil([&] {
                   return application.ending() || application.output().contains("Full · ")
                          || application.output().contains("Error · ");
               }),
               few + "an end, Full or Error");
    cameUp += application.output().contains("Full · ") ? 1 : 0;
    if (application.ending()) {
        run.expect(!application.ending()->signaled && application.ending()->status != 0
                       && !application.output().isEmpty(),
                   few + "a refusal with a reason, unlike " + ending(*application.ending()) + ": "
                       + application.output());
        return;
    }
    application.send(SIGTERM);
    run.expect(application.waitForEnd() && !application.ending()->signaled
                   && application.ending()->status == 0,
               few + "an end with 0");
    run.expectNothingLeft();
}

void tryToStart(FaultRun &run)
{
    int cameUp = 0;
    for (const int count : descriptorCounts)
        tryToStartWithFew(run, count, cameUp);
    run.expect(cameUp > 0, "to come up with some");
    run.saw(QByteArray::number(cameUp) + " of " + QByteArray::number(descriptorCounts.size())
            + " came up, the others said why not");
}

void tryTools(FaultRun &run)
{
    int passed = 0;
    for (const int count : descriptorCounts) {
        for (const char *arguments : {"--smoke", "--render-config -", "--node-version"}) {
            const Outcome outcome = runProgram(withDescriptors(run, count, arguments));
            const bool well = !outcome.signaled && outcome.status == 0;
            passed += well ? 1 : 0;
            const bool told = !(outcome.output + outcome.error).isEmpty();
            run.expect(well || (!outcome.signaled && outcome.status == 1 && told),
                       QByteArray::number(count) + " descriptors, " + arguments
                           + ": 0, or 1 and a reason, unlike "
                           + ending({outcome.status, outcome.signaled}) + ": " + outcome.output
                           + outcome.error);
        }
        run.expectNothingLeft();
    }
    run.expect(passed > 0, "to pass with some");
    run.saw(QByteArray::number(passed) + " passed, the others gave 1 and said why");
}

/// The lowest free descriptor number: with this limit, the process cannot open any more.
rlim_t openDescriptors(pid_t process)
{
    const std::filesystem::path all = "/proc/" + std::to_string(process) + "/fd";
    rlim_t lowest = 0;
    while (std::filesystem::is_symlink(all / std::to_string(lowest)))
        ++lowest;
    return lowest;
}

void setDescriptors(pid_t process, rlim_t count)
{
    rlimit limit{};
    ::prlimit(process, RLIMIT_NOFILE, nullptr, &limit);
    limit.rlim_cur = count;
    ::prlimit(process, RLIMIT_NOFILE, &limit, nullptr);
}

void tryExhausted(FaultRun &run)
{
    WatchedApplication &application = run.launch("state=full");
    run.expect(application.reaches(Phase::Full), "Full");
    setDescriptors(application.id(), openDescriptors(application.id()));
    run.expect(application.stays(Phase::Full, 5s), "Full without descriptors");
    setDescriptors(application.id(), 256);
    run.expectPolls();
    run.expect(application.phase() == Phase::Full, "Full");
    run.saw("Full all the time, polls continue afterwards");
}

void tryToStopExhausted(FaultRun &run)
{
    WatchedApplication &application = run.launch("state=full");
    run.expect(application.reaches(Phase::Full), "Full");
    setDescriptors(application.id(), openDescriptors(application.id()));
    run.expect(application.endsWell(), "the application ends with 0");
    run.expect(LaunchedApplication::debugLog().contains("Done."), "the node to end well");
    run.saw("ended with 0, its node closed its store");
}

} // namespace

std::vector<Fault> kernelFaults()
{
    std::vector<Fault> faults{
        {"4 to 64 file descriptors: the application",
         "comes up, or says why not; never dies, nothing left running", tryToStart},
        {"4 to 64 file descriptors: the tools", "0, or 1 and a reason", tryTools},
        {"file descriptors exhausted for 5 s", "Full all the time; polls continue afterwards",
         tryExhausted}};
    // The sanitizers open a pipe to inspect an object, blame the object if they cannot get one, and
    // look for leaks in /proc.
    if (!PeakMemory::hasSanitizer) {
        faults.push_back({"file descriptors exhausted when told to end",
                          "ends with 0, the node with it", tryToStopExhausted});
        faults.push_back({"no /proc", "comes up and ends with 0; tools give 0", tryWithoutProc});
        faults.push_back({"no /proc: --smoke", "0, without a figure of the memory",
                          tryToSmokeWithoutProc, true});
    }
    return faults;
}

} // namespace tidewick
