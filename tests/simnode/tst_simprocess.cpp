// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "RawClient.h"
#include "SimulatedNode.h"
#include "support/Surroundings.h"
#include "support/TestFiles.h"

#include <QElapsedTimer>
#include <QTcpServer>

#include <csignal>

using namespace tidewick;
namespace fs = std::filesystem;

using Ending = SimulatedNode::Ending;

namespace {

constexpr Ending success{0, false};
constexpr const char *quick = "start-delay=0 stop-delay=0.1";

int linesIn(const QByteArray &text)
{
    return static_cast<int>(text.count('\n'));
}

/// Whether these parts appear in this order.
bool inOrder(const QByteArray &text, std::initializer_list<const char *> parts)
{
    qsizetype at = 0;
    for (const char *part : parts) {
        at = text.indexOf(part, at);
        if (at < 0)
            return false;
    }
    return true;
}

} // namespace

class TestSimProcess : public QObject
{
    Q_OBJECT

private slots:
    void printsItsVersion();
    void refusesArguments_data();
    void refusesArguments();
    void refusesScenarios();
    void saysThatItIsSimulated();
    void refusesConfigurations_data();
    void refusesConfigurations();
    void runsWithoutADebugLog();
    void needsAWritableStore();
    void needsItsPorts_data();
    void needsItsPorts();

    void refusesConnectionsAtFirst();
    void neverListens();

    void prints();
    void goesThroughItsCourse();
    void stockNodeGoesThroughItsCourse();
    void continuesItsStore();
};

void TestSimProcess::printsItsVersion()
{
    SimulatedNode node;
    node.startWith({QStringLiteral("--version")});
    QCOMPARE(node.waitForEnd(), success);
    const QByteArrayList lines = node.standardOutput().split('\n');
    QCOMPARE(lines.size(), 3);
    QCOMPARE(lines[0], QByteArray("xrpld version 2.3.0-simulated"));
    QVERIFY(lines[1].contains("simulated node"));
    QCOMPARE(lines[2], QByteArray());
    QCOMPARE(node.standardError(), QByteArray());
}

void TestSimProcess::refusesArguments_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::newRow("none") << QStringList();
    QTest::newRow("unknown") << QStringList{QStringLiteral("--start")};
    QTest::newRow("no file") << QStringList{QStringLiteral("--conf")};
    QTest::newRow("two files") << QStringList{QStringLiteral("--conf"), QStringLiteral("a"),
                                              QStringLiteral("b")};
}

void TestSimProcess::refusesArguments()
{
    QFETCH(QStringList, arguments);
    SimulatedNode node;
    node.startWith(arguments);
    QCOMPARE(node.waitForEnd(), (Ending{1, false}));
    QCOMPARE(linesIn(node.standardError()), 1);
}

void TestSimProcess::refusesScenarios()
{
    SimulatedNode node;
    node.start("speed=fast");
    QCOMPARE(node.waitForEnd(), (Ending{2, false}));
    const QByteArray error = node.standardError();
    QCOMPARE(linesIn(error), 1);
    QVERIFY(error.contains("speed=fast"));
}

void TestSimProcess::saysThatItIsSimulated()
{
    SimulatedNode node;
    writeFile(node.folder() / "debug.log", "what was there\n");
    node.start(quick);
    QVERIFY(node.waitUntilOpen());
    node.signal(SIGTERM);
    QCOMPARE(node.waitForEnd(), success);
    QVERIFY(node.standardError().split('\n').first().contains("SIMULATED"));
    QCOMPARE(node.standardOutput(), QByteArray());

    static const QRegularExpression line(
        QStringLiteral("^\\d{4}-[A-Z][a-z]{2}-\\d\\d \\d\\d:\\d\\d:\\d\\d\\.\\d{9} UTC "
                       "[A-Za-z]+:(NFO|WRN|ERR|FTL) .+$"));
    QByteArrayList log = node.debugLog().trimmed().split('\n');
    QCOMPARE(log.takeFirst(), QByteArray("what was there"));
    QVERIFY(log.first().contains("SIMULATED"));
    QVERIFY(log.last().endsWith("Application:NFO Done."));
    for (const QByteArray &text : log)
        QVERIFY2(line.match(QString::fromUtf8(text)).hasMatch(), text);
}

void TestSimProcess::refusesConfigurations_data()
{
    QTest::addColumn<QByteArray>("before");
    QTest::addColumn<QByteArray>("after");
    QTest::addColumn<int>("number");
    QTest::addColumn<bool>("signaled");
    const auto refused = [](const char *name, const char *before, const char *after) {
        QTest::newRow(name) << QByteArray(before) << QByteArray(after) << 255 << false;
    };
    const auto aborted = [](const char *name, const char *before, const char *after) {
        QTest::newRow(name) << QByteArray(before) << QByteArray(after) << SIGABRT << true;
    };
    refused("no server", "[server]", "[x]");
    refused("no port section", "[port_ws]", "[x]");
    refused("bad port", "port = ", "port = x");
    refused("open to all", "ip = 127.0.0.1", "ip = 0.0.0.0");
    refused("no validators file", "validators.txt", "none.txt");
    refused("no validators", "validators.txt", "xrpld.cfg");
    refused("damaged list key", "validators.txt\n", "xrpld.cfg\n[validator_list_keys]\nEDkey\n");
    aborted("unknown store", "Mossgrid", "Leveler");
    aborted("no store", "[node_db]", "[x]");
}

void TestSimProcess::refusesConfigurations()
{
    QFETCH(QByteArray, before);
    QFETCH(QByteArray, after);
    QFETCH(int, number);
    QFETCH(bool, signaled);
    SimulatedNode node;
    node.configuration.replace(before, after);
    node.start(quick);
    QCOMPARE(node.waitForEnd(), (Ending{number, signaled}));
    QCOMPARE(linesIn(node.standardError()), 2); // that it is simulated, and why it exits

    node.startWith({QStringLiteral("--conf"), QStringLiteral("/no/such/file")});
    QCOMPARE(node.waitForEnd(), (Ending{SIGABRT, true}));
}

void TestSimProcess::runsWithoutADebugLog()
{
    SimulatedNode node;
    node.configuration.replace("debug.log", "missing/debug.log");
    node.start(quick);
    QVERIFY(node.waitUntilOpen());
    node.signal(SIGINT);
    QCOMPARE(node.waitForEnd(), success);
    QVERIFY(node.standardError().contains("missing/debug.log"));
}

void TestSimProcess::needsAWritableStore()
{
    SimulatedNode node;
    writeFile(node.store(), "a file");
    node.start(quick);
    QCOMPARE(node.waitForEnd(), (Ending{SIGABRT, true}));
    QVERIFY(node.standardError().contains("/db"));
}

void TestSimProcess::needsItsPorts_data()
{
    QTest::addColumn<bool>("http");
    QTest::newRow("http") << true;
    QTest::newRow("ws") << false;
}

void TestSimProcess::needsItsPorts()
{
    QFETCH(bool, http);
    SimulatedNode node;
    QTcpServer other;
    QVERIFY(other.listen(QHostAddress::LocalHost, http ? node.rpcPort() : node.streamPort()));
    QElapsedTimer timer;
    timer.start();
    node.start();
    QCOMPARE(node.waitForEnd(), (Ending{255, false}));
    QVERIFY(timer.elapsed() >= 900);
    const QByteArrayList lines = node.standardError().trimmed().split('\n');
    QCOMPARE(lines.size(), 2);
    QVERIFY(lines[1].contains("cannot open"));
}

void TestSimProcess::refusesConnectionsAtFirst()
{
    SimulatedNode node;
    QElapsedTimer timer;
    timer.start();
    node.start();
    QVERIFY(node.waitUntilOpen());
    QVERIFY(timer.elapsed() >= 650);
    QCOMPARE(RawClient(node.streamPort()).state(), RawClient::State::Open);

    SimulatedNode later(1);
    later.start("start-delay=60");
    QVERIFY(later.waitForLog("SIMULATED"));
    QCOMPARE(RawClient(later.rpcPort()).state(), RawClient::State::Refused);
}

void TestSimProcess::neverListens()
{
    SimulatedNode node;
    node.start("listen=no start-delay=0 stop-delay=0");
    QVERIFY(node.waitForLog("STATE->waiting_quorum"));
    QCOMPARE(RawClient(node.rpcPort()).state(), RawClient::State::Refused);
    node.signal(SIGTERM);
    QCOMPARE(node.waitForEnd(), success);
}

void TestSimProcess::prints()
{
    SimulatedNode node;
    node.start("output=1000050 lines=25 exit=1");
    QCOMPARE(node.waitForEnd(), (Ending{1, false}));
    const QByteArray text = node.standardError();
    const qsizetype begin = text.indexOf('\n') + 1;
    const QByteArray output = text.mid(begin, 1'000'050);
    const QByteArrayList lines = text.mid(begin + 1'000'050).split('\n');
    QCOMPARE(linesIn(output), 10'001);
    QVERIFY(output.startsWith("output line 1."));
    QVERIFY(output.contains("\noutput line 10000."));
    QVERIFY(output.endsWith('\n'));
    QCOMPARE(lines.size(), 26);
    QCOMPARE(lines.first(), QByteArray("line 1"));
    QCOMPARE(lines[24], QByteArray("line 25"));
}

void TestSimProcess::goesThroughItsCourse()
{
    SimulatedNode node;
    node.start("speed=200 stop-delay=0");
    // The old file is removed after the first tidy-up.
    QVERIFY(node.waitForLog("maintenance: retiring"));
    QVERIFY(node.waitForLog("maintenance: trimming"));
    const QByteArray log = node.debugLog();
    QVERIFY(inOrder(log, {"STATE->waiting_quorum", "STATE->acquiring", "STATE->catching_up",
                          "STATE->syncing", "STATE->tracking", "STATE->full"}));
    QVERIFY(inOrder(log, {"maintenance: starting", "maintenance: waiting", "maintenance: countdown",
                          "maintenance: building", "maintenance: switched", "maintenance: retiring",
                          "maintenance: idle", "maintenance: trimming"}));
    const QJsonObject counts = node.ask("get_counts");
    QVERIFY(counts[u"dbKBTotal"].toInt() > 1024);
    QVERIFY(counts[u"dbKBTotal"].toInt() <= 64 * 1024);
    QVERIFY(!fs::exists(node.store() / "simulated-ledgers-1.store"));
    QVERIFY(node.ask("server_info")[u"info"][u"complete_ledgers"].toString().contains(u'-'));
    node.signal(SIGTERM);
    QCOMPARE(node.waitForEnd(), success);
}

void TestSimProcess::stockNodeGoesThroughItsCourse()
{
    SimulatedNode node;
    node.configuration.replace("type = Mossgrid", "type = NuDB");
    node.start("speed=200 stop-delay=0");
    QVERIFY(node.waitForLog("STATE->full"));
    QVERIFY(!node.ask("get_counts").contains(u"mossgrid_maintenance"));
    node.signal(SIGTERM);
    QCOMPARE(node.waitForEnd(), success);
    const QByteArray log = node.debugLog();
    QVERIFY(inOrder(log, {"STATE->disconnected", "STATE->connected", "STATE->syncing",
                          "STATE->tracking", "STATE->full"}));
    QVERIFY(!log.contains("STATE->acquiring"));
    QVERIFY(!log.contains("maintenance"));
}

void TestSimProcess::continuesItsStore()
{
    const auto newest = [](const SimulatedNode &node) {
        return node.ask("server_info")[u"info"][u"validated_ledger"][u"seq"].toInteger();
    };
    SimulatedNode node;
    node.start("state=full speed=500 stop-delay=0 ledger-interval=2");
    QVERIFY(node.waitUntilOpen());
    QTRY_VERIFY(newest(node) > 0);
    const qint64 first = newest(node);
    QTRY_VERIFY(newest(node) > first + 20);
    const qint64 last = newest(node);
    node.signal(SIGTERM);
    QCOMPARE(node.waitForEnd(), success);

    node.start("state=full start-delay=0 stop-delay=0");
    QVERIFY(node.waitUntilOpen());
    QVERIFY(newest(node) > last);
}

TIDEWICK_LOOPBACK_TEST_MAIN(TestSimProcess)
#include "tst_simprocess.moc"
