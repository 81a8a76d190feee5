// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "support/TestProgram.h"

#include <filesystem>

namespace tidewick {

namespace {

/// Created on first use, because test files register themselves before main().
std::vector<TestFile> &files()
{
    static std::vector<TestFile> all;
    return all;
}

} // namespace

TestFile::TestFile(const char *file, Run runTests)
    : m_name(std::filesystem::path(file).stem().string()), m_run(runTests)
{
    files().push_back(*this);
}

const std::vector<TestFile> &TestFile::all()
{
    return files();
}

} // namespace tidewick
