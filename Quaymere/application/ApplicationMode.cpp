// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "application/ApplicationMode.h"

#include "application/QuaymereApp.h"
#include "application/TerminalApp.h"
#include "desktop/BusProbe.h"
#include "desktop/Display.h"
#include "desktop/SingleInstance.h"
#include "desktop/StartupNotification.h"
#include "platform/files/Folders.h"
#include "platform/process/DeathWatch.h"
#include "platform/process/Descriptors.h"
#include "platform/process/StandardStreams.h"
#include "platform/process/Supervisor.h"

#include <optional>
#include <utility>

namespace tidewick::ApplicationMode {

namespace {

template <typename App>
int runAs(char **argv, const Supervisor &supervisor, const DeathWatch &deathWatch)
{
    int argc = 1; // Qt must not parse the other arguments
    QByteArray launch = StartupNotification::takeId();
    App application(argc, argv);
    SingleInstance instance(std::move(launch));
    switch (instance.claim()) {
    case SingleInstance::Claim::First:
        supervisor.noteRunning();
        return application.run(instance, {deathWatch, supervisor.id()});
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
    std::optional<DeathWatch> deathWatch(std::in_place, Folders::lockFile("tidewick-node"));
    const Supervisor supervisor;
    if (!supervisor.isApplication()) {
        const Supervisor::Ending ending = supervisor.waitForEnd();
        deathWatch.reset(); // waits for a node that the application has left
        return Supervisor::endLike(ending);
    }
    BusProbe::avoidIfSilent();
    return Display::isThere() ? runAs<QuaymereApp>(argv, supervisor, *deathWatch)
                              : runAs<TerminalApp>(argv, supervisor, *deathWatch);
}

} // namespace tidewick::ApplicationMode
