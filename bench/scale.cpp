// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

// How the cost scales with the work: with the number of files in a store, and with the number of
// transactions a second.

#include "application/LaunchedApplication.h"
#include "application/TrayReader.h"
#include "application/WholeDesktop.h"
#include "application/XWindows.h"
#include "bench/Measure.h"
#include "bench/StoreOfFiles.h"
#include "node/Probe.h"

#include <csignal>

using namespace tidewick;
using namespace tidewick::bench;

namespace {

constexpr int ledgerSeconds = 4;
/// In milliseconds: until the cost of starting is over.
constexpr int beginning = 16'000;
constexpr int measured = 32'000;

/// With few files, determining the size once is too short to measure.
constexpr int filesAMeasurement = 100'000;

Duration timeOfSize(int files)
{
    const StoreOfFiles store(files);
    const int sizes = filesAMeasurement / files;
    const auto all = [&] {
        for (int i = 0; i < sizes; ++i)
            if (Probe::directorySize(store.path()) < files)
                qFatal("The size is wrong");
    };
    return measure(5, all, [] {}).first / sizes;
}

void measureStores()
{
    const Duration few = timeOfSize(10);
    print("size of a store, 1,000 files / 10 files", {timeOfSize(1'000), few}, "<= 100");
    print("size of a store, 100,000 files / 10 files", {timeOfSize(100'000), few}, "<= 10000");
}

/// The processor time with the ledger window open and this number of transactions a second.
Duration timeOfLedger(const SessionBus &bus, const TestBundle &bundle, int rate)
{
    const QByteArray each = QByteArray::number(rate * ledgerSeconds);
    LaunchedApplication tidewick(bundle,
                                 "state=full txns=" + each + '-' + each
                                     + " ledger-interval=" + QByteArray::number(ledgerSeconds));
    TrayReader reader(bus.connection());
    if (!waitUntil([&] { return reader.findItem(); })
        || !reader.click(QStringLiteral("Live Ledger…"))
        || !waitUntil([] { return LaunchedApplication::noted("RPCHandler:NFO subscribe") > 0; }))
        qFatal("The ledger window does not follow the node");
    QTest::qWait(beginning);
    const Duration before = processorTimeSoFar(tidewick.application());
    QTest::qWait(measured);
    const Duration time = processorTimeSoFar(tidewick.application()) - before;
    if (!tidewick.endsWell(SIGTERM))
        qFatal("The application did not end well");
    return time;
}

void measureRates(const SessionBus &bus, const TestBundle &bundle)
{
    const Duration one = timeOfLedger(bus, bundle, 1);
    print("live ledger, 10 transactions a second / 1", {timeOfLedger(bus, bundle, 10), one},
          "<= 10");
    print("live ledger, 100 transactions a second / 1", {timeOfLedger(bus, bundle, 100), one},
          "<= 100");
    print("live ledger, 1,000 transactions a second / 1", {timeOfLedger(bus, bundle, 1'000), one},
          "<= 1000");
}

} // namespace

int main(int argc, char *argv[])
{
    const WholeDesktop desktop(argc, argv);
    measureStores();
    const TestBundle bundle;
    measureRates(desktop.bus(), bundle);
    return 0;
}
