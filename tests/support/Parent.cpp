// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

// A program that starts the child named by its first argument, with the second for an argument,
// writes its process id to the file named by the third, and waits to be killed. With a fourth
// argument, a file to lock, it has a watch over its child, and threads.

#include "platform/process/ChildProcess.h"
#include "platform/process/DeathWatch.h"

#include <fstream>
#include <optional>
#include <thread>

#include <unistd.h>

namespace {

[[noreturn]] void waitForEver()
{
    while (true)
        ::pause();
}

} // namespace

int main(int argc, char **argv)
{
    std::optional<tidewick::DeathWatch> watch;
    std::vector<std::thread> threads;
    tidewick::ChildSpec spec;
    if (argc > 4) {
        spec.deathWatch = &watch.emplace(argv[4]);
        (void)watch->isAlone();
        for (int thread = 0; thread < 16; ++thread)
            threads.emplace_back(waitForEver);
    }
    spec.executable = argv[1];
    spec.arguments = {argv[2]};
    const auto child = tidewick::ChildProcess::start(spec);
    std::ofstream(argv[3]) << child->id() << std::flush;
    waitForEver();
}
