// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "platform/process/StandardStreams.h"
#include "simnode/Chatter.h"
#include "simnode/Ending.h"
#include "simnode/Node.h"
#include "simnode/StoreFault.h"
#include "simnode/Version.h"

#include <QCoreApplication>

#include <csignal>
#include <string>
#include <vector>

namespace {

using namespace tidewick;
using namespace tidewick::sim;

constexpr int usageStatus = 1;
constexpr int scenarioStatus = 2;

int printVersion()
{
    const bool printed =
        StandardStreams::printLine(std::string("xrpld version ") + version)
        && StandardStreams::printLine("This is a simulated node: it is on no network.");
    return printed ? EXIT_SUCCESS : EXIT_FAILURE;
}

void complain(const std::string &text)
{
    StandardStreams::printError("xrpld: " + text + '\n');
}

void makeFolder(const std::filesystem::path &folder)
{
    if (folder.empty())
        return;
    std::error_code error;
    std::filesystem::create_directories(folder, error);
    if (error)
        throw FileError(folder, error);
}

/// Plays what the scenario puts before everything else. Returns true if the process is to end then.
bool playPrelude(const Scenario &scenario)
{
    Chatter::printBytes(scenario.outputBytes);
    Chatter::printLines(scenario.outputLines);
    if (scenario.closesStreams)
        Chatter::closeStreams();
    const bool ends = scenario.ending && scenario.endingCue == Scenario::Cue::Start
                      && scenario.endingAfter == Seconds(0);
    if (ends && scenario.ending->signaled)
        dieOf(scenario.ending->number);
    return ends;
}

/// Prints why the store cannot be used. Dies of a signal or returns the exit status.
int failFor(const StoreFailure &failure)
{
    StandardStreams::printError(std::string(failure.text) + '\n');
    if (failure.ending.signaled)
        dieOf(failure.ending.number);
    return failure.ending.number;
}

int run(const std::filesystem::path &file, const Scenario &scenario, int &argc, char **argv)
{
    const NodeConfiguration configuration = NodeConfiguration::read(file);
    const pid_t grandchild =
        scenario.grandchild ? Chatter::startGrandchild(*scenario.grandchild) : 0;
    DebugLog log(configuration.debugLog);
    log.info("Application", QStringLiteral("Process starting: a SIMULATED node, xrpld-%1, on no "
                                           "network")
                                .arg(QLatin1String(version)));
    if (grandchild > 0)
        log.info("Application", QStringLiteral("grandchild %1").arg(grandchild));
    if (playPrelude(scenario))
        return scenario.ending->number;
    if (const auto failure = storeFailureOf(scenario.storeFault, configuration))
        return failFor(*failure);
    makeFolder(configuration.databasePath);

    QCoreApplication application(argc, argv);
    Node node(configuration, scenario, log);
    node.start();
    return QCoreApplication::exec();
}

} // namespace

int main(int argc, char *argv[])
{
    StandardStreams::prepare();
    const std::vector<std::string> arguments(argv + 1, argv + argc);
    if (arguments.size() == 1 && arguments[0] == "--version")
        return printVersion();
    if (arguments.size() != 2 || arguments[0] != "--conf") {
        complain("usage: xrpld --conf FILE | --version");
        return usageStatus;
    }
    try {
        const Scenario scenario = Scenario::fromEnvironment();
        StandardStreams::printError(std::string("xrpld ") + version
                                    + ": this is a SIMULATED node, it is on no network\n");
        return run(arguments[1], scenario, argc, argv);
    } catch (const ScenarioError &error) {
        complain(std::string("TIDEWICK_SIMNODE: ") + error.what());
        return scenarioStatus;
    } catch (const ConfigurationError &error) {
        complain(error.what());
        if (error.reaction() == ConfigurationError::Reaction::Refusal)
            return refusalStatus;
        dieOf(SIGABRT);
    } catch (const FileError &error) {
        complain(error.what());
        dieOf(SIGABRT);
    }
}
