// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "application/QuaymereApp.h"

#include "desktop/StartupNotification.h"
#include "platform/process/SignalListener.h"
#include "ui/icon/ApplicationIcon.h"

#include <QEvent>

#include <csignal>

namespace tidewick {

QuaymereApp::QuaymereApp(int &argc, char **argv) : QApplication(argc, argv)
{
    setApplicationName(QStringLiteral("Tidewick"));
    setDesktopFileName(QLatin1String(SingleInstance::name));
    setWindowIcon(applicationIcon());
    // Closing the last window leaves the tray item running.
    setQuitOnLastWindowClosed(false);
    setQuitLockEnabled(false);
}

QuaymereApp::~QuaymereApp() = default;

int QuaymereApp::run(SingleInstance &instance, const Guards &guards)
{
    AppDelegate &delegate = m_appDelegate.emplace(guards);
    connect(&delegate, &AppDelegate::terminated, this, [] { exit(EXIT_SUCCESS); });

    DesktopFaces &faces = m_faces.emplace(delegate.node());
    connect(&faces, &DesktopFaces::quitRequested, &delegate, &AppDelegate::terminate);
    connect(&instance, &SingleInstance::activated, &faces, &DesktopFaces::comeForward);
    connect(&instance, &SingleInstance::launched, &faces, &DesktopFaces::comeForwardOnceSettled);
    connect(&instance, &SingleInstance::actionActivated, this, &QuaymereApp::runAction);
    connect(&delegate, &AppDelegate::terminating, &instance,
            [&instance] { instance.refuseCalls(QStringLiteral("it is quitting")); });

    // On Wayland, a window's use of its token ends the launch.
    const auto finishLaunch = [](const QByteArray &id) {
        if (platformName() == QLatin1String("xcb"))
            StartupNotification::finish(id);
    };
    connect(&instance, &SingleInstance::served, this, finishLaunch);
    finishLaunch(instance.launch());

    m_notices.emplace(delegate.node(), QDBusConnection::sessionBus());
    connect(&*m_notices, &Notices::installationWanted, &faces,
            [&faces] { faces.run(MenuCommand::InstallNode); });

    SignalListener signalListener({SIGTERM, SIGINT, SIGHUP});
    connect(&signalListener, &SignalListener::received, &delegate, &AppDelegate::terminate);
    return exec();
}

/// Runs an action of the desktop entry.
void QuaymereApp::runAction(const QString &action)
{
    if (action == QLatin1String("live-ledger"))
        m_faces->run(MenuCommand::LiveLedger);
    else if (action == QLatin1String("settings"))
        m_faces->run(MenuCommand::Settings);
    else if (action == QLatin1String("quit"))
        m_faces->run(MenuCommand::Quit);
}

bool QuaymereApp::event(QEvent *event)
{
    if (event->type() == QEvent::Quit && m_appDelegate) {
        // The session is ending. A session that asks for data to be saved may still continue, so
        // only this event counts. Qt would close the windows and end the event loop while the node
        // keeps running.
        event->ignore();
        m_appDelegate->terminate();
        return true;
    }
    if (event->type() == QEvent::ApplicationPaletteChange && m_faces)
        m_faces->paletteChanged();
    return QApplication::event(event);
}

} // namespace tidewick
