// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include "application/Desktop.h"
#include "application/TrayReader.h"
#include "faults/FaultRun.h"
#include "support/TrayWatcherService.h"

#include <chrono>

namespace tidewick {

/// The application on a desktop with a tray and with its ledger window open, for trials of the
/// stream. It is observed from outside.
class LiveDesktop
{
public:
    explicit LiveDesktop(FaultRun &run);

    /// Launches the application and opens its ledger window once the node is full. On failure
    /// records it in the run and returns false.
    bool open(const QByteArray &scenario);

    /// The phase shown in the tray's menu; empty if the menu does not answer.
    QString phase();

    /// Whether the application answers a second launch.
    bool answersALaunch();

    /// How much the ledger window displays: the number of colour changes per thousand pixels.
    /// Without bars and rows it is low.
    static int detail();

    /// The peak memory use of the application, in MiB.
    double peakMemory();

    /// The processor time that the application uses within the next second.
    std::chrono::milliseconds secondOfWork();

    /// Ends the application before the desktop goes away. Returns false if it does not exit with
    /// status 0.
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
