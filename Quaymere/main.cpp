// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "ApplicationMode.h"
#include "CommandLine.h"
#include "Snapshots.h"
#include "ToolingModes.h"
#include "platform/ProcessMemory.h"
#include "platform/StandardStreams.h"

#include <vector>

namespace {

using namespace tidewick;

/// Hands each mode to what runs it.
class Runner
{
public:
    Runner(int &argc, char **argv) : m_argc(argc), m_argv(argv) {}

    int operator()(const Mode::Smoke &mode) const
    {
        return ToolingModes::run(mode, m_argc, m_argv);
    }

    int operator()(const Mode::Snapshot &mode) const { return Snapshots::run(mode, m_argv); }

    int operator()(const Mode::Application &) const { return ApplicationMode::run(m_argv); }

    int operator()(const auto &mode) const { return ToolingModes::run(mode); }

private:
    int &m_argc;
    char **m_argv;
};

} // namespace

int main(int argc, char *argv[])
{
    StandardStreams::prepare();
    ProcessMemory::giveBackFreed();
    const std::vector<std::string> arguments(argv, argv + argc);
    return std::visit(Runner(argc, argv), parseCommandLine(arguments));
}
