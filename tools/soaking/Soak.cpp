// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

// Runs the application for a long time among faults and tells whether it takes up more and more.
// It is measured in one and the same state: the node in sync, the ledger window open and following,
// nothing having gone wrong for a while. Faults come from the start on, so that what is loaded or
// made once for the first of them counts on neither side.

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
/// After which it is measured first; in a short run, after a third of it.
constexpr std::chrono::milliseconds beginning = 60s;
/// Without a fault before a measurement at either end; in a short run, a tenth of it.
constexpr std::chrono::milliseconds calm = 15s;
constexpr std::chrono::seconds pause = 5s;
constexpr int samplesAtAnEnd = 11;

void waitFor(std::chrono::milliseconds time)
{
    QTest::qWait(int(time.count()));
}

/// One a second.
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
