// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include "application/Desktop.h"
#include "application/TrayReader.h"
#include "faults/FaultRun.h"
#include "support/TrayWatcherService.h"

#include <chrono>

namespace tidewick {

/// The application on a desktop with a tray, its ledger window open, for trials of the stream. What
/// it shows and does is looked at from outside.
class LiveDesktop
{
public:
    explicit LiveDesktop(FaultRun &run);

    /// Launches it and opens its ledger window once the node is full. False, noted in the run, when
    /// that does not come to be.
    bool open(const QByteArray &scenario);

    /// The phase in the tray's menu; empty when the menu does not answer.
    QString phase();

    /// Whether a second launch is answered.
    bool answersALaunch();

    /// How much there is to see in the ledger window: places in a thousand where the colour
    /// changes. Without bars and rows they are few.
    static int detail();

    /// The largest it ever was, in MiB.
    double peakMemory();

    /// Processor time that it takes within a second from now.
    std::chrono::milliseconds secondOfWork();

    /// Tells it to end, before the desktop goes; false when it does not end with 0.
    bool endsWell() { return m_application->endsWell(); }

private:
    std::chrono::milliseconds workSoFar();

    FaultRun &m_run;
    SessionBus m_bus;
    XServer m_display;
    TrayWatcherService m_watcher;
    TrayReader m_reader;
    WatchedApplication *m_application = nullptr;
};

} // namespace tidewick
