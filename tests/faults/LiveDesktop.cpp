// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "faults/LiveDesktop.h"

#include "application/XWindows.h"
#include "platform/process/ProcessMemory.h"

#include <QTest>

#include <algorithm>
#include <ctime>

#include <unistd.h>

namespace tidewick {

namespace {

const QString windowTitle = QStringLiteral("Live Ledger");

} // namespace

LiveDesktop::LiveDesktop(FaultRun &run)
    : m_run(run), m_watcher(m_bus.connection()), m_reader(m_bus.connection())
{
}

bool LiveDesktop::open(const QByteArray &scenario)
{
    m_application = &m_run.launchOnDesktop(scenario);
    return m_run.expect(waitUntil([&] { return m_reader.findItem(); }), "an item in the tray")
           && m_run.expect(waitUntil([&] { return phase() == QLatin1String("Full"); }), "Full")
           && m_run.expect(m_reader.click(QStringLiteral("Live Ledger…")), "a menu")
           && m_run.expect(waitUntil([] { return isWindowShown(windowTitle); }), "the window");
}

QString LiveDesktop::phase()
{
    const QList<MenuEntry> menu = m_reader.menu();
    return menu.isEmpty() ? QString() : menu.first().text;
}

bool LiveDesktop::answersALaunch()
{
    WatchedApplication &second = m_run.launchOnDesktop({});
    return second.process().waitForEnd() && !second.process().ending()->signaled
           && second.process().ending()->status == 0;
}

int LiveDesktop::detail()
{
    const QImage picture = windowPicture(windowTitle);
    qint64 changes = 0;
    for (int y = 0; y < picture.height(); ++y) {
        for (int x = 1; x < picture.width(); ++x)
            changes += picture.pixel(x, y) != picture.pixel(x - 1, y) ? 1 : 0;
    }
    return static_cast<int>(changes * 1000 / std::max(picture.width() * picture.height(), 1));
}

double LiveDesktop::peakMemory()
{
    constexpr double MiB = 1024 * 1024;
    const auto memory = ProcessMemory::of(m_application->id());
    return memory ? static_cast<double>(memory->peakFootprint) / MiB : 0;
}

std::chrono::milliseconds LiveDesktop::workSoFar()
{
    clockid_t clock = 0;
    timespec time{};
    if (::clock_getcpuclockid(m_application->id(), &clock) != 0
        || ::clock_gettime(clock, &time) != 0)
        return {};
    return std::chrono::seconds(time.tv_sec)
           + std::chrono::duration_cast<std::chrono::milliseconds>(
               std::chrono::nanoseconds(time.tv_nsec));
}

std::chrono::milliseconds LiveDesktop::secondOfWork()
{
    const auto before = workSoFar();
    QTest::qWait(1000); // the measuring interval; there is no event to wait for
    return workSoFar() - before;
}

} // namespace tidewick
