// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "ToolingModes.h"

#include "SmokeTest.h"
#include "node/NodeConfig.h"
#include "node/StorageStatus.h"
#include "platform/DeathWatch.h"
#include "platform/Descriptors.h"
#include "platform/Folders.h"
#include "platform/JsonRead.h"
#include "platform/SignalListener.h"
#include "platform/StandardStreams.h"

#include <QCoreApplication>

#include <csignal>

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
    // A store of its own, so that what a script tries out teaches the application nothing.
    const auto suite = Defaults::suite(QStringLiteral("quaymere-describe-storage"));
    StorageStatus status(suite ? *suite : Defaults::standard());
    return printResult(status.describe(*object, WallClock::now()).toStdString());
}

int run(const Mode::Smoke &, int &argc, char **argv)
{
    if (!Descriptors::suffice())
        return EXIT_FAILURE;
    const DeathWatch deathWatch;
    const std::filesystem::path data = NodeConfig::dataDirectory().parent_path() / "Tidewick-smoke";
    std::error_code ignored;
    std::filesystem::remove_all(data, ignored);

    QCoreApplication application(argc, argv);
    SmokeTest test(data, NodeHost(&deathWatch));
    QObject::connect(&test, &SmokeTest::finished, &application, &QCoreApplication::exit,
                     Qt::QueuedConnection);
    SignalListener signalListener({SIGTERM, SIGINT, SIGHUP});
    QObject::connect(&signalListener, &SignalListener::received, &test, &SmokeTest::interrupt);
    test.start();
    return QCoreApplication::exec();
}

int run(const Mode::Usage &mode)
{
    StandardStreams::printError(mode.message);
    return exitUsage;
}

} // namespace tidewick::ToolingModes
