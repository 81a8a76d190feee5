// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "smoke/SmokeMode.h"

#include "node/NodeConfig.h"
#include "platform/process/DeathWatch.h"
#include "platform/process/Descriptors.h"
#include "platform/process/SignalListener.h"
#include "smoke/SmokeTest.h"

#include <QCoreApplication>

#include <csignal>

namespace tidewick {

int SmokeMode::run(int &argc, char **argv)
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

} // namespace tidewick
