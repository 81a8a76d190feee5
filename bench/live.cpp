// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

// The cost of the whole application with the ledger window open and 200 transactions a second,
// compared with a Node.js client that uses the public xrpl package and subscribes to the same
// streams.

#include "application/LaunchedApplication.h"
#include "application/TrayReader.h"
#include "application/WholeDesktop.h"
#include "application/XWindows.h"
#include "bench/Measure.h"

#include <csignal>

using namespace tidewick;
using namespace tidewick::bench;

namespace {

constexpr int minute = 60'000;
/// In milliseconds: until the cost of starting is over, and several ledgers have closed.
constexpr int beginning = 20'000;

} // namespace

int main(int argc, char *argv[])
{
    const WholeDesktop desktop(argc, argv);
    const TestBundle bundle;

    LaunchedApplication tidewick(bundle, "state=full txns=800-800 ledger-interval=4");
    TrayReader reader(desktop.bus().connection());
    if (!waitUntil([&] { return reader.findItem(); })
        || !reader.click(QStringLiteral("Live Ledger…"))
        || !waitUntil([] { return isWindowShown(QStringLiteral("Live Ledger")); }))
        qFatal("The ledger window does not open");
    if (!waitUntil([] { return LaunchedApplication::noted("RPCHandler:NFO subscribe") > 0; }))
        qFatal("The ledger window does not subscribe");
    Beside client("node", {XRPL_CLIENT_PATH});
    if (const QByteArray line = client.readyLine(); line != "subscribed")
        qFatal("The client says: %s", (line + client.output()).constData());

    QTest::qWait(beginning);
    const Duration ours = processorTimeSoFar(tidewick.application());
    const Duration theirs = processorTimeSoFar(client.id());
    QTest::qWait(minute);
    print("a minute of the live ledger / Node.js client, CPU",
          {processorTimeSoFar(tidewick.application()) - ours,
           processorTimeSoFar(client.id()) - theirs},
          "<= 0.2");
    printMemory("the live ledger / Node.js client, memory", memory(tidewick.application()),
                memory(client.id()), "<= 0.2");
    printMemory("  of it what they have written", writtenMemory(tidewick.application()),
                writtenMemory(client.id()), "");

    client.send(SIGTERM);
    if (!client.waitForEnd() || !client.output().contains("Payment"))
        qFatal("The client counted nothing: %s", client.output().constData());
    if (!tidewick.endsWell(SIGTERM))
        qFatal("The application did not end well");
    return 0;
}
