// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include <string>
#include <vector>

namespace tidewick {

/// One of the test files in a program that contains several: the function that runs it, and its
/// name without folder and extension, by which it is selected. Created before main() runs.
class TestFile
{
public:
    using Run = int (*)(int argc, char **argv);

    TestFile(const char *file, Run runTests);

    /// All test files of this program.
    static const std::vector<TestFile> &all();

    const std::string &name() const { return m_name; }
    int run(int argc, char **argv) const { return m_run(argc, argv); }

private:
    std::string m_name;
    Run m_run;
};

} // namespace tidewick

/// Begins the function that runs the tests of this file and takes `argc` and `argv`; its body
/// follows. Each file runs in a separate process.
#define TIDEWICK_TEST_PROGRAM                                         \
    static int runTests(int argc, char **argv);                       \
    static const tidewick::TestFile thisTestFile(__FILE__, runTests); \
    static int runTests(int argc, char **argv)
