// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "application/ApplicationMode.h"
#include "commandline/CommandLine.h"
#include "platform/process/ProcessMemory.h"
#include "platform/process/StandardStreams.h"
#include "smoke/SmokeMode.h"
#include "snapshots/SnapshotMode.h"
#include "tooling/ToolingModes.h"

#include <vector>

namespace {

using namespace tidewick;

/// Calls the function that runs the mode.
class Runner
{
public:
    Runner(int &argc, char **argv) : m_argc(argc), m_argv(argv) {}

    int operator()(const Mode::Smoke &) const { return SmokeMode::run(m_argc, m_argv); }

    int operator()(const Mode::Snapshot &mode) const { return SnapshotMode::run(mode, m_argv); }

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
