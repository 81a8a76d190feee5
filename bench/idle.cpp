// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

// The cost of the application compared with a bare tray program and a shell loop that poll the same
// node in the same minute, and the time that both programs take from their start to an item in the
// tray.

#include "application/LaunchedApplication.h"
#include "application/TrayReader.h"
#include "application/WholeDesktop.h"
#include "bench/Measure.h"

#include <QCoreApplication>
#include <QElapsedTimer>

#include <csignal>
using namespace tidewick;
using namespace tidewick::bench;

namespace {

constexpr int seconds = 60;
constexpr int launches = 9;

constexpr const char *shellLoop = R"(
ask() { curl -s -d "{\"method\":\"$1\",\"params\":[{}]}" http://127.0.0.1:15005/ | jq -r "$2"; }
cycle=0
while sleep 2; do
    ask server_info .result.info.server_state
    [ $((cycle % 5)) = 0 ] && ask get_counts .result.process.footprint
    cycle=$((cycle + 1))
done)";

ChildSpec bareTray()
{
    ChildSpec spec;
    spec.executable = BARE_TRAY_PATH;
    return spec;
}

/// The time from the start of a program to its item in the tray.
Duration timeToTray(const SessionBus &bus, const std::function<void()> &start,
                    const std::function<void()> &end)
{
    TrayReader reader(bus.connection());
    QElapsedTimer timer;
    timer.start();
    start();
    while (!reader.findItem())
        QCoreApplication::processEvents();
    const Duration time(double(timer.nsecsElapsed()) / 1e9);
    end();
    while (reader.findItem())
        QCoreApplication::processEvents();
    return time;
}

void measureStart(const SessionBus &bus, const TestBundle &bundle)
{
    std::vector<Duration> ours;
    std::vector<Duration> bare;
    for (int launch = 0; launch < launches; ++launch) {
        std::unique_ptr<LaunchedApplication> application;
        ours.push_back(timeToTray(
            bus, [&] { application = std::make_unique<LaunchedApplication>(bundle, "state=full"); },
            [&] {
                if (!application->endsWell(SIGTERM))
                    qFatal("The application did not end well");
            }));
        std::unique_ptr<Beside> program;
        bare.push_back(timeToTray(
            bus, [&] { program = std::make_unique<Beside>(bareTray()); },
            [&] { program.reset(); }));
    }
    print("start to tray item / bare tray program", {median(ours), median(bare)}, "<= 1.5");
}

void measureIdle(const SessionBus &bus, const TestBundle &bundle)
{
    LaunchedApplication application(bundle, "state=full");
    TrayReader reader(bus.connection());
    if (!waitUntil([&] { return LaunchedApplication::noted("get_counts") > 0; }))
        qFatal("The node does not answer");
    Beside program(bareTray());
    Beside shell("bash", {"-c", shellLoop});
    QTest::qWait(5'000); // until the cost of starting is over

    const auto times = [&] {
        return std::array{processorTimeSoFar(application.application()),
                          processorTimeSoFar(program.id()), processorTimeSoFar(shell.id())};
    };
    const auto before = times();
    QTest::qWait(seconds * 1'000);
    const auto after = times();
    const Duration ours = after[0] - before[0];
    print("a minute in sync / bare tray program, CPU", {ours, after[1] - before[1]}, "<= 2");
    print("a minute in sync / shell loop of curl and jq, CPU", {ours, after[2] - before[2]},
          "<= 0.25");
    printMemory("in sync / bare tray program, memory", memory(application.application()),
                memory(program.id()), "<= 1.3");
    if (!application.endsWell(SIGTERM))
        qFatal("The application did not end well");
}

} // namespace

int main(int argc, char *argv[])
{
    const WholeDesktop desktop(argc, argv);
    const TestBundle bundle;
    measureStart(desktop.bus(), bundle);
    measureIdle(desktop.bus(), bundle);
    return 0;
}
