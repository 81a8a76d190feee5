// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "RawClient.h"
#include "SimulatedNode.h"
#include "platform/process/ChildProcess.h"
#include "support/Surroundings.h"

#include <QElapsedTimer>

#include <array>
#include <csignal>

#include <fcntl.h>
#include <poll.h>
#include <unistd.h>

using namespace tidewick;

using Ending = SimulatedNode::Ending;

namespace {

constexpr Ending success{0, false};
constexpr const char *quick = "start-delay=0 stop-delay=0.1";

/// Whether the process has a handler for SIGTERM.
bool catchesSigterm(pid_t process)
{
    const QByteArray status = contentOf("/proc/" + std::to_string(process) + "/status");
    const QByteArray mask = status.mid(status.indexOf("SigCgt:") + 7).trimmed().left(16);
    return (mask.toULongLong(nullptr, 16) & (1ULL << (SIGTERM - 1))) != 0;
}

} // namespace

class TestSimEndings : public QObject
{
    Q_OBJECT

private slots:
    void stopsByCommand();
    void stopTakesAWhile();
    void hangsInsteadOfStopping();
    void endsBySignals_data();
    void endsBySignals();
    void isKilledByASecondSignal();
    void ignoresSigterm();
    void stopsWhileStarting();
    void endsAsScripted_data();
    void endsAsScripted();
    void endsOnACue_data();
    void endsOnACue();
    void floods();
    void closesItsStreams();
    void leavesAGrandchild();
};

void TestSimEndings::stopsByCommand()
{
    SimulatedNode node;
    node.start("start-delay=0 stop-delay=3");
    QVERIFY(node.waitUntilOpen());
    RawClient idle(node.rpcPort());
    // Sent in one go, so that the second command arrives before the ports are closed.
    RawClient client(node.rpcPort());
    QElapsedTimer timer;
    timer.start();
    client.send(RawClient::request("stop")
                + RawClient::request("server_info", "Connection: close\r\n"));
    const QByteArray answers = client.read([](const QByteArray &) { return false; });
    QCOMPARE(answers.count("HTTP/1.1 200 OK"), 2);
    QVERIFY(answers.indexOf("ripple server stopping") < answers.indexOf("server_state"));
    QVERIFY(answers.contains("ripple server stopping"));
    QVERIFY(node.waitUntilRefused());
    QVERIFY(timer.elapsed() >= 70); // 80 ms, less up to 5% for a coarse timer
    QVERIFY(node.isRunning());
    QCOMPARE(idle.readAway(), 0);
    QCOMPARE(node.waitForEnd(), success);
    QVERIFY(node.debugLog().contains("RPCHandler:NFO stop\n"));
}

void TestSimEndings::stopTakesAWhile()
{
    SimulatedNode node;
    node.start("start-delay=0");
    QVERIFY(node.waitUntilOpen());
    QElapsedTimer timer;
    timer.start();
    node.signal(SIGTERM);
    QCOMPARE(node.waitForEnd(), success);
    QVERIFY(timer.elapsed() >= 350); // 0.4 s, less up to 5% for a coarse timer
}

void TestSimEndings::hangsInsteadOfStopping()
{
    SimulatedNode node;
    node.start("start-delay=0 stop-delay=0 stop=hang");
    QVERIFY(node.waitUntilOpen());
    QCOMPARE(node.ask("stop")[u"status"].toString(), QStringLiteral("success"));
    // A node that stops logs this before it answers.
    QVERIFY(!node.debugLog().contains("Server stopping"));
    QCOMPARE(node.ask("server_info")[u"status"].toString(), QStringLiteral("success"));
    node.signal(SIGTERM);
    QCOMPARE(node.waitForEnd(), success);
    QVERIFY(node.debugLog().contains("Server stopping"));
}

void TestSimEndings::endsBySignals_data()
{
    QTest::addColumn<int>("number");
    QTest::addColumn<bool>("dies");
    QTest::newRow("SIGTERM") << SIGTERM << false;
    QTest::newRow("SIGINT") << SIGINT << false;
    QTest::newRow("SIGHUP") << SIGHUP << true;
    QTest::newRow("SIGKILL") << SIGKILL << true;
}

void TestSimEndings::endsBySignals()
{
    QFETCH(int, number);
    QFETCH(bool, dies);
    SimulatedNode node;
    node.start(quick);
    QVERIFY(node.waitUntilOpen());
    node.signal(number);
    QCOMPARE(node.waitForEnd(), (Ending{dies ? number : 0, dies}));
    QCOMPARE(node.debugLog().contains("Application:NFO signal " + QByteArray::number(number)),
             number != SIGKILL);
}

void TestSimEndings::isKilledByASecondSignal()
{
    for (const int second : {SIGTERM, SIGINT}) {
        SimulatedNode node;
        node.start("start-delay=0 stop-delay=10");
        QVERIFY(node.waitUntilOpen());
        node.signal(SIGTERM);
        QVERIFY(node.waitForLog("signal 15"));
        node.signal(second);
        QCOMPARE(node.waitForEnd(), (Ending{second, true}));
    }
}

void TestSimEndings::ignoresSigterm()
{
    SimulatedNode node;
    node.start("start-delay=0 stop-delay=0 sigterm=ignore");
    QVERIFY(node.waitUntilOpen());
    node.signal(SIGTERM);
    QTRY_COMPARE(node.debugLog().count("signal 15"), 1);
    node.signal(SIGTERM);
    QTRY_COMPARE(node.debugLog().count("signal 15"), 2);
    QVERIFY(node.isRunning());
    node.signal(SIGINT);
    QCOMPARE(node.waitForEnd(), success);
}

void TestSimEndings::stopsWhileStarting()
{
    SimulatedNode node;
    node.start("start-delay=10 stop-delay=0");
    QTRY_VERIFY(catchesSigterm(node.id()));
    node.signal(SIGTERM);
    QCOMPARE(node.waitForEnd(), success);
}

void TestSimEndings::endsAsScripted_data()
{
    QTest::addColumn<QByteArray>("scenario");
    QTest::addColumn<int>("number");
    QTest::addColumn<bool>("signaled");
    QTest::addColumn<bool>("opens");
    const auto row = [](const char *scenario, int number, bool signaled, bool opens) {
        QTest::newRow(scenario) << QByteArray(scenario) << number << signaled << opens;
    };
    row("exit=3", 3, false, false);
    row("exit=0", 0, false, false);
    row("signal=SEGV", SIGSEGV, true, false);
    row("signal=ABRT", SIGABRT, true, false);
    row("signal=KILL", SIGKILL, true, false);
    row("exit=4 after=0.2", 4, false, true);
    row("signal=BUS after=0.2", SIGBUS, true, true);
    row("signal=TERM after=0.2", SIGTERM, true, true);
}

void TestSimEndings::endsAsScripted()
{
    QFETCH(QByteArray, scenario);
    QFETCH(int, number);
    QFETCH(bool, signaled);
    QFETCH(bool, opens);
    SimulatedNode node;
    node.start("start-delay=0 " + scenario);
    QCOMPARE(node.waitForEnd(), (Ending{number, signaled}));
    QCOMPARE(node.debugLog().contains("Opened"), opens);
}

void TestSimEndings::endsOnACue_data()
{
    QTest::addColumn<QByteArray>("scenario");
    QTest::addColumn<int>("cue");
    QTest::newRow("a signal") << QByteArray("exit=7 when=usr1") << SIGUSR1;
    QTest::newRow("a stop") << QByteArray("exit=7 when=stop stop-delay=1000") << SIGTERM;
}

void TestSimEndings::endsOnACue()
{
    QFETCH(QByteArray, scenario);
    QFETCH(int, cue);
    SimulatedNode node;
    node.start("start-delay=0 " + scenario);
    QVERIFY(node.waitForLog("Application starting"));
    QCOMPARE(node.ask("server_info")[u"status"].toString(), QStringLiteral("success"));
    node.signal(cue);
    QCOMPARE(node.waitForEnd(), (Ending{7, false}));
}

void TestSimEndings::floods()
{
    SimulatedNode node;
    node.start("start-delay=0 stop-delay=0 flood=1000000000000"); // floods until it is stopped
    QByteArray text;
    QTRY_VERIFY((text += node.standardError()).size() > 1'000'000);
    QVERIFY(text.contains("output line 9999."));
    QCOMPARE(node.ask("server_info")[u"status"].toString(), QStringLiteral("success"));
    node.signal(SIGTERM);
    QCOMPARE(node.waitForEnd(), success);
}

void TestSimEndings::closesItsStreams()
{
    SimulatedNode node;
    node.start("start-delay=0 stop-delay=0 streams=close output=10");
    QVERIFY(node.waitUntilOpen());
    node.signal(SIGTERM);
    QCOMPARE(node.waitForEnd(), success);
    QVERIFY(!node.standardError().contains("stopping"));
}

void TestSimEndings::leavesAGrandchild()
{
    SimulatedNode node;
    writeFile(node.folder() / "xrpld.cfg", node.configuration);
    std::array<int, 2> ends{};
    QCOMPARE(::pipe2(ends.data(), O_CLOEXEC), 0);
    const UniqueDescriptor reading(ends[0]);
    UniqueDescriptor writing(ends[1]);

    ChildSpec spec;
    spec.executable = TIDEWICK_SIMNODE_PATH;
    spec.arguments = {"--conf", node.folder() / "xrpld.cfg"};
    spec.environment["TIDEWICK_SIMNODE"] = "grandchild=0.6 exit=1";
    spec.standardError = writing.get();
    spec.ownProcessGroup = true;
    const auto child = ChildProcess::start(spec);
    writing.reset();
    const pid_t group = child->id();
    QCOMPARE(child->wait().status, 1);
    ::kill(-group, SIGKILL);

    // Only the node's grandchild holds the other end of the pipe now.
    pollfd entry{reading.get(), 0, 0};
    QCOMPARE(::poll(&entry, 1, 0), 0);
    QCOMPARE(::poll(&entry, 1, 5000), 1);
    QVERIFY((entry.revents & POLLHUP) != 0);
}

TIDEWICK_LOOPBACK_TEST_MAIN(TestSimEndings)
#include "tst_simendings.moc"
