// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "tooling/ToolingModes.h"

#include "node/NodeConfig.h"
#include "node/StorageStatus.h"
#include "platform/files/Folders.h"
#include "platform/json/JsonRead.h"
#include "platform/process/StandardStreams.h"
#include "platform/text/DisplayText.h"

#include <unistd.h>

namespace tidewick::ToolingModes {

namespace {

std::filesystem::path renderTarget(const std::string &operand)
{
    return operand == "-" ? Folders::newTemporary("quaymere-render-")
                          : Folders::fromOperand(operand);
}

int printResult(const std::string &line)
{
    return StandardStreams::printLine(line) ? EXIT_SUCCESS : EXIT_FAILURE;
}

} // namespace

int run(const Mode::RenderConfig &mode)
{
    try {
        const NodeConfig config(Bundle::main(), Defaults::standard());
        return printResult(config.render(renderTarget(mode.directory)).string());
    } catch (const std::exception &error) {
        StandardStreams::printError(std::string("render failed: ") + error.what() + '\n');
        return EXIT_FAILURE;
    }
}

int run(const Mode::NodeVersion &)
{
    ChildSpec spec;
    spec.executable = Bundle::main().nodeExecutable();
    spec.arguments = {"--version"};
    try {
        return ChildProcess::start(spec)->wait().status;
    } catch (const FileError &error) {
        StandardStreams::printError(std::string("cannot run ") + error.what() + '\n');
        return EXIT_FAILURE;
    }
}

int run(const Mode::DescribeStorage &mode)
{
    const auto object = JsonRead::parseObject(QByteArray::fromStdString(mode.json));
    if (!object)
        return run(Mode::Usage{describeStorageUsage});
    // A separate store, so that a script's trials do not change the application's own records.
    const auto suite = Defaults::suite(QStringLiteral("quaymere-describe-storage"));
    StorageStatus status(suite ? *suite : Defaults::standard());
    const QString line = status.describe(*object, WallClock::now());
    // A text of the node's must not control a terminal, but a script wants it as it is.
    const bool isForEyes = ::isatty(STDOUT_FILENO) == 1;
    return printResult((isForEyes ? DisplayText::singleLine(line) : line).toStdString());
}

int run(const Mode::Usage &mode)
{
    StandardStreams::printError(mode.message);
    return exitUsage;
}

} // namespace tidewick::ToolingModes
