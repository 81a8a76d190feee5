// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

// A program that starts the child named by its first argument, with "wait", writes its process id
// to the file named by the second, and waits to be killed.

#include "platform/ChildProcess.h"

#include <fstream>

#include <unistd.h>

int main(int, char **argv)
{
    tidewick::ChildSpec spec;
    spec.executable = argv[1];
    spec.arguments = {"wait"};
    const auto child = tidewick::ChildProcess::start(spec);
    std::ofstream(argv[2]) << child->id() << std::flush;
    while (true)
        ::pause();
}
