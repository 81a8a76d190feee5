// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

// The memory that the application keeps after its windows have been opened and closed.

#include "application/LaunchedApplication.h"
#include "application/TrayReader.h"
#include "application/WholeDesktop.h"
#include "application/XWindows.h"
#include "bench/Measure.h"

#include <array>
#include <csignal>

using namespace tidewick;
using namespace tidewick::bench;

namespace {

struct Window
{
    QString command;
    QString title;
};

const std::array windows{
    Window{QStringLiteral("Live Ledger…"), QStringLiteral("Live Ledger")},
    Window{QStringLiteral("Settings…"), QStringLiteral("Tidewick Settings")},
    Window{QStringLiteral("About"), QStringLiteral("About Tidewick")},
};

constexpr int times = 3;
/// In milliseconds: several ledgers of a busy network.
constexpr int openFor = 20'000;
/// In milliseconds: until the cost of starting, or of closing a window, is over.
constexpr int settle = 6'000;

void openAll(TrayReader &reader)
{
    for (const Window &window : windows)
        if (!reader.click(window.command)
            || !waitUntil([&] { return isWindowShown(window.title); }))
            qFatal("The window %s does not open", qPrintable(window.title));
}

void closeAll()
{
    for (const Window &window : windows) {
        closeWindow(window.title);
        if (!waitUntil([&] { return !isWindowShown(window.title); }))
            qFatal("The window %s does not close", qPrintable(window.title));
    }
}

} // namespace

int main(int argc, char *argv[])
{
    const WholeDesktop desktop(argc, argv);
    const TestBundle bundle;

    LaunchedApplication tidewick(bundle, "state=full txns=800-800 ledger-interval=4");
    TrayReader reader(desktop.bus().connection());
    if (!waitUntil([&] { return reader.findItem(); })
        || !waitUntil([&] { return reader.menu().value(0).text == u"Full"; }))
        qFatal("The node does not get into sync");
    const pid_t process = tidewick.application();
    QTest::qWait(settle);
    const double before = memory(process);
    const double writtenBefore = writtenMemory(process);
    double first = 0;
    for (int time = 0; time < times; ++time) {
        openAll(reader);
        QTest::qWait(openFor);
        closeAll();
        QTest::qWait(settle);
        if (time == 0)
            first = memory(process);
    }
    printMemory("windows closed after having been open / never opened", memory(process), before,
                "at most 4 MiB more");
    printMemory("  of it what it has written", writtenMemory(process), writtenBefore, "");
    printMemory("  the third time / the first time", memory(process), first, "<= 1.02");
    if (!tidewick.endsWell(SIGTERM))
        qFatal("The application did not end well");
    return 0;
}
