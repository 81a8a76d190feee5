// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

// How long the application keeps its event loop from turning, with a node in sync and all faces up.

#include "DesktopFaces.h"
#include "application/Desktop.h"
#include "bench/Measure.h"
#include "support/NodeRig.h"
#include "support/Surroundings.h"

#include <QAbstractEventDispatcher>
#include <QApplication>
#include <QElapsedTimer>

using namespace tidewick;
using namespace tidewick::bench;

int main(int argc, char *argv[])
{
    enterPrivateLoopback();
    const TestHome home;
    const SessionBus bus;
    const XServer display;
    qputenv("QT_NO_GLIB", "1"); // GLib's loop tells of its turns too late
    const QApplication application(argc, argv);
    QApplication::setQuitOnLastWindowClosed(false);
    const DesktopPanel panel;
    if (!DesktopPanel::waitForHost(bus))
        qFatal("No tray host came up");

    NodeRig rig;
    const DesktopFaces faces(rig.node());
    QElapsedTimer turn;
    qint64 longest = 0;
    auto *dispatcher = QAbstractEventDispatcher::instance();
    QObject::connect(dispatcher, &QAbstractEventDispatcher::awake, &rig.node(),
                     [&] { turn.start(); });
    QObject::connect(dispatcher, &QAbstractEventDispatcher::aboutToBlock, &rig.node(), [&] {
        if (turn.isValid())
            longest = std::max(longest, turn.nsecsElapsed());
        turn.invalidate();
    });
    rig.node().start();
    (void)rig.waitForPhase(Phase::Full);
    const auto begin = rig.clock().continuousNow();
    (void)rig.runUntil(
        [&] { return rig.clock().continuousNow() - begin > std::chrono::minutes(5); });
    print("longest turn of the event loop / a frame of 16 ms",
          {Duration(double(longest) / 1e9), Duration(0.016)}, "< 1");
    return 0;
}
