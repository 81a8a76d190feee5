// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

// A command-line mode as a whole process, compared with the smallest possible Qt Core program.

#include "bench/Measure.h"

using namespace tidewick;
using namespace tidewick::bench;

int main()
{
    constexpr int rounds = 51;
    ChildSpec mode;
    mode.executable = QUAYMERE_PATH;
    mode.arguments = {"--describe-storage", "{}"};
    ChildSpec bare;
    bare.executable = BARE_PATH;

    std::vector<Duration> modeTimes;
    std::vector<Duration> bareTimes;
    for (int round = 0; round < rounds; ++round) {
        modeTimes.push_back(processorTime(mode));
        bareTimes.push_back(processorTime(bare));
    }
    print("--describe-storage {} / bare Qt Core program, CPU",
          {median(modeTimes), median(bareTimes)}, "<= 4");
    print("--describe-storage {} / bare Qt Core program, wall",
          measure(
              rounds, [&] { processorTime(mode); }, [&] { processorTime(bare); }),
          "<= 4");
    return 0;
}
