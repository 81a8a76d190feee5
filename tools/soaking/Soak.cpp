// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

// Runs the application for a long time with faults and checks whether its use of resources grows.
// It is always measured in the same state: the node in sync, the ledger window open and following
// it. At either end, there has been no fault for a while. Faults begin at the start, so that
// anything loaded or created once for the first of them counts on neither side.

#include "Faults.h"
#include "Figures.h"
#include "Subject.h"
#include "support/Surroundings.h"

#include <QElapsedTimer>

#include <algorithm>
#include <chrono>
#include <cstdio>

#include <sys/resource.h>

using namespace tidewick;
using namespace tidewick::soaking;
using namespace std::chrono_literals;

namespace {

constexpr std::chrono::minutes usualLength = 30min;
/// The time before the first measurement; in a short run, a third of the run.
constexpr std::chrono::milliseconds beginning = 60s;
/// The time without a fault before the measurement at either end; in a short run, a tenth of the
/// run.
constexpr std::chrono::milliseconds calm = 15s;
constexpr std::chrono::seconds pause = 5s;
constexpr int samplesAtAnEnd = 11;

void waitFor(std::chrono::milliseconds time)
{
    QTest::qWait(int(time.count()));
}

/// Samples the figures once a second.
std::vector<Figures> figuresOf(pid_t process)
{
    std::vector<Figures> figures;
    for (int sample = 0; sample < samplesAtAnEnd; ++sample) {
        waitFor(1s);
        figures.push_back(Figures::of(process));
    }
    return figures;
}

bool soak(std::chrono::minutes length, std::uint64_t seed)
{
    std::printf("A soak of %d min, seed %llu.\n\n", int(length.count()),
                static_cast<unsigned long long>(seed));
    std::fflush(stdout);
    QElapsedTimer time;
    time.start();
    Subject subject;
    Faults faults(subject, seed);
    Record record;

    const auto quiet = std::min<std::chrono::milliseconds>(calm, length / 10);
    const auto strikeUntil = [&](std::chrono::milliseconds end) {
        while (std::chrono::milliseconds(time.elapsed()) < end - quiet) {
            faults.strike();
            subject.settle();
            waitFor(pause);
            record.add(Figures::of(subject.process()));
        }
        waitFor(quiet);
        subject.settle();
        return figuresOf(subject.process());
    };
    subject.settle();
    record.setBeginning(strikeUntil(std::min<std::chrono::milliseconds>(beginning, length / 3)));
    record.setEnd(strikeUntil(length - samplesAtAnEnd * 1s));
    const bool isKept = record.print();
    const bool hasQuit = subject.quits();
    std::printf("| quits with 0, no node left | | | | | | %s |\n\n", hasQuit ? "good" : "BAD");
    for (const auto &[name, count] : faults.counts())
        std::printf("- %s: %d\n", name.c_str(), count);
    std::printf("\nVerdict: %s\n", isKept && hasQuit ? "good" : "BAD");
    return isKept && hasQuit;
}

} // namespace

int main(int argc, char *argv[])
{
    enterPrivateLoopback();
    const rlimit noCore{};
    ::setrlimit(RLIMIT_CORE, &noCore);
    const TestHome home;
    const QCoreApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    const auto length =
        std::chrono::minutes(arguments.value(1, QString::number(usualLength.count())).toInt());
    const QString seed = arguments.value(2, QString::number(std::random_device()()));
    if (length < 1min || arguments.size() > 3) {
        std::fputs("usage: soak [MINUTES [SEED]]\n", stderr);
        return 2;
    }
    return soak(length, seed.toULongLong()) ? EXIT_SUCCESS : EXIT_FAILURE;
}
