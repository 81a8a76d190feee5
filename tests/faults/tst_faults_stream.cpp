// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "faults/FaultTable.h"
#include "faults/LiveDesktop.h"
#include "support/PeakMemory.h"

#include <QTest>

using namespace tidewick;
using namespace std::chrono_literals;

namespace {

/// In MiB: enough for the whole program with all its windows, and for two messages of the largest
/// size.
constexpr double mostMemory = 128;

/// Processor time per second, including one ledger.
constexpr std::chrono::milliseconds mostWorkAfter = 400ms;

/// The number of ledgers requested on each connection that stays open.
constexpr qsizetype backfilledLedgers = 59;

/// The fault begins after one second, so that the lists can fill first.
constexpr const char *usualCourse = "state=full ledger-interval=50 txns=30-30 stream-after=1 ";

struct Trial
{
    QByteArray name;
    /// The kinds of faults in scenario syntax, one per connection; begins with "drop" if the fault
    /// replaces a handshake.
    QByteArray kinds;
    QByteArray more = {};
    bool isLong = false;
};

/// The end of the log entry about a fault: the number of messages and bytes.
QByteArray amountNoted()
{
    const QByteArray log = LaunchedApplication::debugLog();
    const QByteArray over = " is over, ";
    const qsizetype begin = log.lastIndexOf(over) + over.size();
    return log.mid(begin, log.indexOf('\n', begin) - begin);
}

/// Allows for the handshake timeout plus ample time to notice it.
bool waitForEnd(const QByteArray &kind, qsizetype times)
{
    constexpr int limitMs = 90'000;
    const QByteArray over = "stream fault " + kind + " is over";
    return QTest::qWaitFor([&] { return LaunchedApplication::noted(over) >= times; }, limitMs);
}

/// Whether a connection was made after the last fault, and its subscription was answered and
/// processed.
bool isBack()
{
    const QByteArray log = LaunchedApplication::debugLog();
    const QByteArray after = log.mid(log.lastIndexOf(" is over, "));
    return after.contains("RPCHandler:NFO subscribe")
           && after.count("RPCHandler:NFO ledger\n") >= backfilledLedgers;
}

/// Expects the program to keep working while the fault lasts.
void expectAtWork(FaultRun &run, LiveDesktop &desktop)
{
    const qsizetype polls = LaunchedApplication::noted("server_info");
    run.expect(desktop.answersALaunch(), "a second launch is answered");
    run.expect(WatchedApplication::waitForNote("server_info", polls + 2), "polling continues");
    run.expect(desktop.phase() == QLatin1String("Full"), "it shows Full");
}

void expectBack(FaultRun &run, LiveDesktop &desktop, int detailBefore)
{
    run.expect(waitUntil(isBack), "the stream comes back");
    const auto work = desktop.secondOfWork();
    run.expect(work < mostWorkAfter, "little work afterwards, unlike "
                                         + QByteArray::number(work.count()) + " ms in a second");
    run.expect(LiveDesktop::detail() > detailBefore * 7 / 10, "the lists are still there");
    run.expect(desktop.phase() == QLatin1String("Full"), "it shows Full afterwards");
    const double memory = desktop.peakMemory();
    run.expect(PeakMemory::hasSanitizer || (memory > 0 && memory < mostMemory), "bounded memory");
    run.saw("answered, polled, back again; " + amountNoted() + "; at most "
            + QByteArray::number(memory, 'f', 0) + " MiB, then " + QByteArray::number(work.count())
            + " ms of work in a second");
}

void tryStream(FaultRun &run, const Trial &trial)
{
    LiveDesktop desktop(run);
    if (!desktop.open(usualCourse + ("stream=" + trial.kinds + "+ok ") + trial.more))
        return;
    const QByteArrayList kinds = trial.kinds.split('+');
    const auto begins = [&](const QByteArray &kind) {
        return WatchedApplication::waitForNote("stream fault " + kind + " begins",
                                               kinds.count(kind));
    };
    run.expect(begins(kinds.first()), "the fault");
    const int detail = LiveDesktop::detail();
    run.expect(begins(kinds.last()), "the last fault");
    expectAtWork(run, desktop);
    for (const QByteArray &kind : kinds)
        run.expect(waitForEnd(kind, kinds.count(kind)), kind + " comes to an end");
    expectBack(run, desktop, detail);
    run.expect(desktop.endsWell(), "it ends with 0");
}

std::vector<Fault> streamFaults()
{
    std::vector<Fault> faults;
    for (const Trial &trial : {
             Trial{"never upgrades", "drop+silent", "stream-for=4"},
             Trial{"never upgrades, for good", "drop+silent", "", true},
             Trial{"refuses the upgrade with 403", "drop+403+403"},
             Trial{"answers the handshake with garbage", "drop+not-http"},
             Trial{"reconnect storm: hung up, reset and dropped at once",
                   "drop+hang-up+reset+drop"},
             Trial{"closes with 1000 to 1003", "close-1000+close-1001+close-1002+close-1003"},
             Trial{"closes with 1004 to 1007", "close-1004+close-1005+close-1006+close-1007"},
             Trial{"closes with 1008 to 1011", "close-1008+close-1009+close-1010+close-1011"},
             Trial{"closes with 1012 to 1015", "close-1012+close-1013+close-1014+close-1015"},
             Trial{"closes with 3000, 4000, 4999", "close-3000+close-4000+close-4999"},
             Trial{"closes with 0, 999, 5000, 65535: no codes",
                   "close-0+close-999+close-5000+close-65535"},
             Trial{"messages in pieces of one byte", "pieces", "stream-for=4"},
             Trial{"a message in pieces without end", "endless"},
             Trial{"a message of 17 MiB", "large"},
             Trial{"a flood of pings, answers read", "pings", "stream-for=4"},
             Trial{"a flood of pings, answers unread", "unread-pings"},
             Trial{"50,000 messages a second for 3 s", "flood", "stream-for=3"},
             Trial{"50,000 messages a second for 30 s", "flood", "stream-for=30", true},
             Trial{"half of a frame, then silence", "half", "stream-for=4"},
             Trial{"silence", "mute", "stream-for=4"},
             Trial{"garbage instead of frames", "garbage"},
             Trial{"binary messages", "binary", "stream-for=4"},
             Trial{"a text that is not UTF-8", "not-utf8"},
         }) {
        faults.push_back({trial.name,
                          "launches answered, polls and phase right meanwhile; below 128 MiB; idle "
                          "afterwards; back by itself; window and lists kept; ends with 0",
                          [trial](FaultRun &run) { tryStream(run, trial); }, trial.isLong});
    }
    return faults;
}

} // namespace

int main(int argc, char *argv[])
{
    return runFaults("stream", streamFaults(), argc, argv);
}
