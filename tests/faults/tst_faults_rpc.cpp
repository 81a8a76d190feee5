// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "application/Desktop.h"
#include "application/TrayReader.h"
#include "faults/FaultRun.h"
#include "faults/FaultTable.h"
#include "node/NodeRPC.h"
#include "platform/NodePorts.h"
#include "platform/process/ProcessMemory.h"
#include "support/PeakMemory.h"
#include "support/RawServer.h"

#include <QPointer>
#include <QTcpSocket>
#include <QtTest>

#include <csignal>

using namespace tidewick;
using namespace std::chrono_literals;

namespace {

/// A way in which the node misbehaves when it is polled, and the resulting phases.
struct Misbehaviour
{
    QByteArray kind;
    QByteArray what;
    /// The phase that results if it misbehaves from the beginning.
    Phase phase = Phase::Starting;
    /// The phase that results if it misbehaves once the node is full.
    Phase later = Phase::Full;
};

const std::vector<Misbehaviour> misbehaviours{
    {"silent", "reads and never answers"},
    {"unread", "accepts and never reads"},
    {"drip", "answers by one byte a second"},
    {"slow-header", "answers by one byte a second from the header on"},
    {"huge", "answers with 200 MB"},
    {"huge-chunked", "answers with 200 MB in chunks"},
    {"huge-header", "answers with a header of 200 MB"},
    {"garbage", "answers with bytes that are not JSON"},
    {"deep", "answers with JSON nested 5000 deep"},
    {"wrong-types", "answers with wrong types in every field", Phase::Connecting,
     Phase::Connecting},
    {"half", "closes the connection in the middle"},
    {"reset", "resets the connection in the middle"},
    {"array", "answers with an array"},
    {"string-result", "answers with a text for a result"},
    {"503", "answers with status 503"},
    {"401", "asks for credentials"},
};

constexpr qint64 mostMemory = 4 * NodeRPC::largestAnswer;

void expectLittleMemory(FaultRun &run, WatchedApplication &application, qint64 before)
{
    const auto memory = ProcessMemory::of(application.id());
    const qint64 grown = memory ? memory->peakFootprint - before : mostMemory;
    run.expect(PeakMemory::hasSanitizer || grown < mostMemory,
               "little memory, unlike " + QByteArray::number(grown));
    run.saw("grown by " + QByteArray::number(grown / 1024) + " KiB at most");
}

/// Expects two more polls. A node that does not read its requests cannot log them, so then only the
/// phase is checked.
void expectQuestions(FaultRun &run, WatchedApplication &application,
                     const Misbehaviour &misbehaviour, Phase phase)
{
    if (misbehaviour.kind == "unread")
        run.expect(application.stays(phase, 7s), "the phase is unchanged");
    else
        run.expectPolls();
}

void misbehavesFromTheBeginning(FaultRun &run, const Misbehaviour &misbehaviour)
{
    WatchedApplication &application = run.launch("state=full rpc=" + misbehaviour.kind);
    run.expect(application.reaches(misbehaviour.phase), "the phase");
    const auto before = ProcessMemory::of(application.id());
    expectQuestions(run, application, misbehaviour, misbehaviour.phase);
    run.expect(application.phase() == misbehaviour.phase,
               "the phase, unlike: " + application.lastLine());
    run.saw(application.lastLine());
    expectLittleMemory(run, application, before ? before->footprint : 0);
    run.expect(application.endsWell(), "it quits");
}

void misbehavesInFull(FaultRun &run, const Misbehaviour &misbehaviour)
{
    WatchedApplication &application = run.launchInFull("rpc-after=usr1 rpc=" + misbehaviour.kind);
    const auto before = ProcessMemory::of(application.id());
    const auto node = application.node();
    if (!run.expect(before && node, "there is a node"))
        return;
    ::kill(*node, SIGUSR1);
    expectQuestions(run, application, misbehaviour, Phase::Full);
    if (misbehaviour.later == Phase::Full)
        run.expect(application.phase() == Phase::Full, "Full, unlike: " + application.lastLine());
    else
        run.expect(application.reaches(misbehaviour.later), "another phase");
    run.saw(application.lastLine());
    expectLittleMemory(run, application, before->footprint);
    run.expect(application.endsWell(), "it quits");
    run.expect(LaunchedApplication::noted("signal 15") <= 1, "one SIGTERM at most");
}

/// The node's port stays closed.
void refuses(FaultRun &run)
{
    WatchedApplication &application = run.launch("listen=no");
    run.expectNoted("Application starting");
    run.expect(application.reaches(Phase::Starting) && application.stays(Phase::Starting, 5s),
               "Starting");
    run.expect(application.endsWell(), "it quits");
    run.saw(application.lastLine());
}

void smokeIsRefused(FaultRun &run)
{
    const Outcome smoke = run.smoke("listen=no");
    run.expect(smoke.status == 1 && smoke.output.contains("no server_info: timed out"),
               "--smoke FAIL, unlike: " + smoke.output);
    run.saw(smoke.output.trimmed().split('\n').last());
}

/// A request of the first run gets a valid answer during the second run. The node keeps its port
/// closed, so that this process can take it.
void answersTheNextRun(FaultRun &run)
{
    const SessionBus bus;
    const XServer display;
    const DesktopPanel panel;
    TrayReader reader(bus.connection());
    WatchedApplication &application = run.launchOnDesktop("listen=no");
    const auto title = [&] { return reader.findItem() ? reader.menu().value(0).text : QString(); };
    const auto comesTo = [&](const char *phase) {
        return waitUntil([&] { return title() == QString::fromUtf8(phase); });
    };
    run.expect(comesTo("Starting…"), "Starting");
    QPointer<QTcpSocket> question;
    auto server = std::make_unique<RawServer>(
        [&](QTcpSocket *connection) {
            if (!question)
                question = connection;
        },
        NodePorts::rpc);
    run.expect(waitUntil([&] { return !question.isNull(); }), "a request of the first run");
    const auto first = application.node();
    run.expect(reader.click(QStringLiteral("Stop Node")), "a stop");
    run.expect(comesTo("Stopped"), "Stopped");
    server->stopListening();
    run.expect(reader.click(QStringLiteral("Start Node")), "a start");
    run.expect(waitUntil([&] { return application.node() && application.node() != first; }),
               "a second run");
    const bool isStillOpen = question && question->state() == QAbstractSocket::ConnectedState;
    if (isStillOpen) {
        question->write(RawServer::http(R"({"result":{"info":{"server_state":"full"}}})"));
        question->flush();
    }
    run.saw(isStillOpen ? "answered in the second run" : "the question was closed by then");
    run.expect(!QTest::qWaitFor([&] { return title() != QString::fromUtf8("Starting…"); }, 4000),
               "Starting, despite the answer to the first run");
    run.expect(application.endsWell(), "it quits");
}

std::vector<Fault> rpcFaults()
{
    std::vector<Fault> faults;
    for (const Misbehaviour &misbehaviour : misbehaviours) {
        faults.push_back({"the node " + misbehaviour.what + " from the beginning",
                          "waits in its phase, stops by SIGTERM, little memory",
                          [=](FaultRun &run) { misbehavesFromTheBeginning(run, misbehaviour); }});
        faults.push_back({"the node " + misbehaviour.what + " in full",
                          "keeps what it knows, stops, little memory",
                          [=](FaultRun &run) { misbehavesInFull(run, misbehaviour); }});
    }
    faults.push_back({"the node refuses connections", "Starting, and stops by SIGTERM", refuses});
    faults.push_back({"the node refuses connections, --smoke in real time",
                      "--smoke FAIL after 180 s", smokeIsRefused, true});
    faults.push_back({"a request is answered after a stop and another start",
                      "the answer does not count for the new run", answersTheNextRun});
    return faults;
}

} // namespace

int main(int argc, char *argv[])
{
    return runFaults("RPC", rpcFaults(), argc, argv);
}
