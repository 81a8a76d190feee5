// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

// Starts the child named by its first argument, passing the second as the child's argument, writes
// the child's process id to the file named by the third, and waits to be killed. With a fourth
// argument, a lock file, it also starts a watchdog process for the child, and several threads.

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
