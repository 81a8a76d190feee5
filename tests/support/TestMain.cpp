// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "support/TestProgram.h"

#include <cstdio>

using tidewick::TestFile;

/// Runs the test file named by the first argument, passing the remaining arguments to Qt Test.
int main(int argc, char **argv)
{
    for (const TestFile &file : TestFile::all()) {
        if (argc > 1 && file.name() == argv[1]) {
            argv[1] = argv[0];
            return file.run(argc - 1, argv + 1);
        }
    }
    std::fprintf(stderr, "usage: %s NAME [arguments of Qt Test]; the names are\n", argv[0]);
    for (const TestFile &file : TestFile::all())
        std::fprintf(stderr, "  %s\n", file.name().c_str());
    return 2;
}
