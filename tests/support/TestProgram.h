// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include <string>
#include <vector>

namespace tidewick {

/// A file of tests in a program that has several of them: what runs it, and the file's name without
/// folder and ending, by which it is asked for. Exists from before main().
class TestFile
{
public:
    using Run = int (*)(int argc, char **argv);

    TestFile(const char *file, Run runTests);

    /// All of this program.
    static const std::vector<TestFile> &all();

    const std::string &name() const { return m_name; }
    int run(int argc, char **argv) const { return m_run(argc, argv); }

private:
    std::string m_name;
    Run m_run;
};

} // namespace tidewick

/// Begins the function that runs the tests of this file, with `argc` and `argv`; its body follows.
/// Each file is run in a process of its own.
#define TIDEWICK_TEST_PROGRAM                                         \
    static int runTests(int argc, char **argv);                       \
    static const tidewick::TestFile thisTestFile(__FILE__, runTests); \
    static int runTests(int argc, char **argv)
