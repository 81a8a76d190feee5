// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "application/TerminalApp.h"

#include "platform/process/SignalListener.h"

#include <csignal>

#include <unistd.h>

namespace tidewick {

TerminalApp::TerminalApp(int &argc, char **argv) : QCoreApplication(argc, argv)
{
    setApplicationName(QStringLiteral("Tidewick"));
    setQuitLockEnabled(false);
}

TerminalApp::~TerminalApp() = default;

int TerminalApp::run(SingleInstance &instance, const Guards &guards)
{
    AppDelegate &delegate = m_appDelegate.emplace(guards);
    connect(&delegate, &AppDelegate::terminated, this, [] { exit(EXIT_SUCCESS); });

    TerminalFace &face = m_face.emplace(STDOUT_FILENO);
    const NodeController &node = delegate.node();
    connect(&node, &NodeController::statusChanged, &face, [&] { face.show(node.status()); });

    instance.refuseCalls(QStringLiteral("it runs without a display"));
    connect(&instance, &SingleInstance::actionActivated, &delegate, [&](const QString &action) {
        if (action == QLatin1String("quit"))
            delegate.terminate();
    });
    SignalListener signalListener({SIGTERM, SIGINT, SIGHUP});
    connect(&signalListener, &SignalListener::received, &delegate, &AppDelegate::terminate);
    return exec();
}

} // namespace tidewick
