// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "ApplicationMode.h"

#include "QuaymereApp.h"
#include "TerminalApp.h"
#include "platform/BusProbe.h"
#include "platform/DeathWatch.h"
#include "platform/Descriptors.h"
#include "platform/Folders.h"
#include "platform/SingleInstance.h"
#include "platform/StandardStreams.h"
#include "ui/Display.h"

namespace tidewick::ApplicationMode {

namespace {

template <typename App>
int runAs(char **argv)
{
    const DeathWatch deathWatch(Folders::lockFile("tidewick-node"));
    int argc = 1; // the rest is not for Qt to read
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
