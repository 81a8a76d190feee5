// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "application/ApplicationMode.h"

#include "application/QuaymereApp.h"
#include "application/TerminalApp.h"
#include "desktop/BusProbe.h"
#include "desktop/Display.h"
#include "desktop/SingleInstance.h"
#include "platform/files/Folders.h"
#include "platform/process/DeathWatch.h"
#include "platform/process/Descriptors.h"
#include "platform/process/StandardStreams.h"

namespace tidewick::ApplicationMode {

namespace {

template <typename App>
int runAs(char **argv)
{
    const DeathWatch deathWatch(Folders::lockFile("tidewick-node"));
    int argc = 1; // Qt must not parse the other arguments
    App application(argc, argv);
    SingleInstance instance;
    switch (instance.claim()) {
    case SingleInstance::Claim::First:
        return application.run(instance, deathWatch);
    case SingleInstance::Claim::ToldFirst:
        return EXIT_SUCCESS;
    case SingleInstance::Claim::Refused:
        StandardStreams::printError(instance.reason().toStdString() + '\n');
        return EXIT_FAILURE;
    }
    Q_UNREACHABLE();
}

} // namespace

int run(char **argv)
{
    if (!Descriptors::suffice())
        return EXIT_FAILURE;
    BusProbe::avoidIfSilent();
    return Display::isThere() ? runAs<QuaymereApp>(argv) : runAs<TerminalApp>(argv);
}

} // namespace tidewick::ApplicationMode
