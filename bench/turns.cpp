// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

// How long the application blocks its event loop, with a node in sync and the tray item shown: the
// longest delivery of a single event.

#include "application/DesktopFaces.h"
#include "application/WholeDesktop.h"
#include "bench/Measure.h"
#include "support/NodeRig.h"

#include <QApplication>
#include <QElapsedTimer>

using namespace tidewick;
using namespace tidewick::bench;

namespace {

class MeteredApplication final : public QApplication
{
public:
    using QApplication::QApplication;

    bool notify(QObject *receiver, QEvent *event) override
    {
        if (m_inside)
            return QApplication::notify(receiver, event);
        m_inside = true;
        QElapsedTimer timer;
        timer.start();
        const bool result = QApplication::notify(receiver, event);
        m_longest = std::max(m_longest, timer.nsecsElapsed());
        m_inside = false;
        return result;
    }

    Duration longest() const { return Duration(double(m_longest) / 1e9); }
    void reset() { m_longest = 0; }

private:
    bool m_inside = false;
    qint64 m_longest = 0;
};

} // namespace

int main(int argc, char *argv[])
{
    WholeDesktop<MeteredApplication> desktop(argc, argv);
    MeteredApplication &application = desktop.application();

    NodeRig rig;
    const DesktopFaces faces(rig.node());
    constexpr Duration frame(0.016);
    rig.node().start();
    if (!rig.waitForPhase(Phase::Full))
        qFatal("The node does not get into sync");
    print("longest turn of the event loop while starting / a frame", {application.longest(), frame},
          "< 1");

    application.reset();
    const auto begin = rig.clock().continuousNow();
    if (!rig.runUntil(
            [&] { return rig.clock().continuousNow() - begin > std::chrono::minutes(10); }))
        qFatal("The polls make no progress");
    print("longest turn of the event loop in sync / a frame", {application.longest(), frame},
          "< 1");
    return 0;
}
