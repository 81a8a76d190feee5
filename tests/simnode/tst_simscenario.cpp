// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "simnode/Scenario.h"
#include "support/Surroundings.h"
#include "support/TestFiles.h"

#include <csignal>

using namespace tidewick;
using namespace tidewick::sim;

namespace {

Scenario parse(const char *text)
{
    return Scenario::parse(QString::fromUtf8(text));
}

} // namespace

class TestSimScenario : public QObject
{
    Q_OBJECT

private slots:
    void cleanup() { qunsetenv("TIDEWICK_SIMNODE"); }
    void isEmptyByDefault();
    void readsTheCourse();
    void readsTheTroubles();
    void listNames_data();
    void listNames();
    void storeFaultNames_data();
    void storeFaultNames();
    void readsTheProcess();
    void readsTheFaults();
    void readsTheStreamFaults();
    void readsTheCounts();
    void separators_data();
    void separators();
    void faultNames_data();
    void faultNames();
    void streamFaultNames_data();
    void streamFaultNames();
    void signalNames_data();
    void signalNames();
    void refuses_data();
    void refuses();
    void readsAFile();
    void needsTheFile();
};

void TestSimScenario::isEmptyByDefault()
{
    const Scenario scenario = Scenario::fromEnvironment();
    QCOMPARE(scenario.speed, 1.0);
    QCOMPARE(scenario.ledgerInterval, Seconds(4));
    QCOMPARE(scenario.transactions.least, 20);
    QCOMPARE(scenario.transactions.most, 200);
    QVERIFY(scenario.listens);
    QVERIFY(!scenario.ending);
    QVERIFY(!scenario.startDelay);
    QCOMPARE(scenario.lists, ListState::Active);
    QVERIFY(scenario.warnings.empty());
    QCOMPARE(scenario.clockOffset, std::chrono::seconds(0));
    QVERIFY(!scenario.ioLatency && !scenario.load);
    QCOMPARE(scenario.storeFault, StoreFault::None);
    QCOMPARE(scenario.faults.of(QStringLiteral("stop")), RpcFault::None);
    QVERIFY(scenario.countsBootstrap && scenario.countsMaintenance && scenario.countsProcess);
}

void TestSimScenario::readsTheCourse()
{
    const Scenario scenario =
        parse("speed=2.5 state=odd peers=3 amendment-blocked=yes maintenance=building "
              "txns=5-7 ledger-interval=0.5");
    QCOMPARE(scenario.speed, 2.5);
    QCOMPARE(scenario.state, QStringLiteral("odd"));
    QCOMPARE(scenario.peers, 3);
    QVERIFY(scenario.amendmentBlocked);
    QCOMPARE(scenario.maintenance, QStringLiteral("building"));
    QCOMPARE(scenario.transactions.least, 5);
    QCOMPARE(scenario.transactions.most, 7);
    QCOMPARE(scenario.realLedgerInterval(), Seconds(0.2));
}

void TestSimScenario::readsTheTroubles()
{
    const Scenario scenario = parse("warnings=other+amendment-majority+other clock-offset=-90 "
                                    "io-latency=700 load=12.5");
    QCOMPARE(scenario.warnings, (std::set{ServerWarning::AmendmentMajority, ServerWarning::Other}));
    QCOMPARE(scenario.clockOffset, std::chrono::seconds(-90));
    QCOMPARE(scenario.ioLatency, std::chrono::milliseconds(700));
    QCOMPARE(scenario.load, 12.5);
    QCOMPARE(parse("warnings=amendment-blocked").warnings,
             std::set{ServerWarning::AmendmentBlocked});
    QCOMPARE(parse("clock-offset=100000000").clockOffset, std::chrono::seconds(100'000'000));
    QCOMPARE(parse("clock-offset=-100000000").clockOffset, std::chrono::seconds(-100'000'000));
}

void TestSimScenario::listNames_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<ListState>("lists");
    // Empty if the state is not pinned.
    QTest::addColumn<QString>("state");
    const auto row = [](const char *text, ListState lists, const char *state) {
        QTest::newRow(text) << QString::fromLatin1(text) << lists << QString::fromLatin1(state);
    };
    row("lists=active", ListState::Active, "");
    row("lists=expiring", ListState::Expiring, "");
    row("lists=none", ListState::None, "connected");
    row("lists=expired", ListState::Expired, "connected");
    row("lists=active state=full", ListState::Active, "full");
    row("lists=none state=full", ListState::None, "full");
    row("state=odd lists=expired", ListState::Expired, "odd");
}

void TestSimScenario::listNames()
{
    QFETCH(QString, text);
    QFETCH(ListState, lists);
    QFETCH(QString, state);
    const Scenario scenario = Scenario::parse(text);
    QCOMPARE(scenario.lists, lists);
    QCOMPARE(scenario.pinnedState().value_or(QString()), state);
}

void TestSimScenario::storeFaultNames_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<StoreFault>("fault");
    QTest::newRow("damaged") << QStringLiteral("damaged") << StoreFault::Damaged;
    QTest::newRow("damaged-index") << QStringLiteral("damaged-index") << StoreFault::DamagedIndex;
    QTest::newRow("stock") << QStringLiteral("stock") << StoreFault::Stock;
}

void TestSimScenario::storeFaultNames()
{
    QFETCH(QString, name);
    QFETCH(StoreFault, fault);
    QCOMPARE(Scenario::parse(QLatin1String("store=") + name).storeFault, fault);
}

void TestSimScenario::readsTheProcess()
{
    const Scenario scenario = parse("exit=3 after=1.5 when=stop streams=close flood=7 listen=no "
                                    "start-delay=2 stop-delay=0 stop=hang sigterm=ignore "
                                    "grandchild=4 output=5000000000 lines=30");
    QCOMPARE(scenario.ending->number, 3);
    QVERIFY(!scenario.ending->signaled);
    QCOMPARE(scenario.endingAfter, Seconds(1.5));
    QCOMPARE(scenario.endingCue, Scenario::Cue::Stop);
    QCOMPARE(parse("when=usr1").endingCue, Scenario::Cue::User);
    QVERIFY(scenario.closesStreams);
    QCOMPARE(scenario.floodBytes, 7);
    QVERIFY(!scenario.listens);
    QCOMPARE(scenario.startDelay, Seconds(2));
    QCOMPARE(scenario.stopDelay, Seconds(0));
    QVERIFY(scenario.stopHangs);
    QVERIFY(scenario.ignoresSigterm);
    QCOMPARE(scenario.grandchild, Seconds(4));
    QCOMPARE(scenario.outputBytes, 5'000'000'000);
    QCOMPARE(scenario.outputLines, 30);
}

void TestSimScenario::readsTheFaults()
{
    const Scenario scenario =
        parse("rpc=garbage rpc.stop=ok rpc.get_counts=redirect redirect-port=80 rpc-after=0.25");
    QCOMPARE(scenario.faults.of(QStringLiteral("server_info")), RpcFault::Garbage);
    QCOMPARE(scenario.faults.of(QStringLiteral("other")), RpcFault::Garbage);
    QCOMPARE(scenario.faults.of(QStringLiteral("stop")), RpcFault::None);
    QCOMPARE(scenario.faults.of(QStringLiteral("get_counts")), RpcFault::Redirect);
    QCOMPARE(scenario.faults.redirectPort, quint16{80});
    QCOMPARE(scenario.faults.after, Seconds(0.25));
    QVERIFY(!scenario.faults.onCue);
    QVERIFY(parse("rpc-after=usr1").faults.onCue);
}

void TestSimScenario::readsTheStreamFaults()
{
    using Kind = StreamFault::Kind;
    QCOMPARE(StreamFaults().of(3), StreamFault());
    const Scenario scenario = parse("stream=drop+close-4000+ok stream-after=0.5 stream-for=2");
    const StreamFaults &faults = scenario.streamFaults;
    QCOMPARE(faults.of(0), (StreamFault{Kind::Drop, 0}));
    QCOMPARE(faults.of(1), (StreamFault{Kind::Close, 4000}));
    QCOMPARE(faults.of(2), StreamFault());
    QCOMPARE(faults.of(200), StreamFault());
    QCOMPARE(faults.after, Seconds(0.5));
    QCOMPARE(faults.duration, Seconds(2));
}

void TestSimScenario::readsTheCounts()
{
    const Scenario plain = parse("counts=plain");
    QVERIFY(!plain.countsBootstrap && !plain.countsMaintenance && !plain.countsProcess);
    const Scenario some = parse("process=no bootstrap=no");
    QVERIFY(!some.countsBootstrap && some.countsMaintenance && !some.countsProcess);
}

void TestSimScenario::separators_data()
{
    QTest::addColumn<QString>("text");
    QTest::newRow("spaces") << QStringLiteral("  peers=1   speed=2 ");
    QTest::newRow("commas") << QStringLiteral("peers=1,speed=2,");
    QTest::newRow("lines") << QStringLiteral("peers=1\r\nspeed=2\n");
    QTest::newRow("comments") << QStringLiteral("# speed=9\npeers=1 # few\n\nspeed=2#x");
    QTest::newRow("the last counts") << QStringLiteral("speed=1 peers=1 speed=2");
}

void TestSimScenario::separators()
{
    QFETCH(QString, text);
    const Scenario scenario = Scenario::parse(text);
    QCOMPARE(scenario.peers, 1);
    QCOMPARE(scenario.speed, 2.0);
}

void TestSimScenario::faultNames_data()
{
    QTest::addColumn<QString>("name");
    for (const char *name :
         {"ok",          "silent",      "unread",   "garbage", "array", "array-result",
          "no-result",   "error",       "400",      "403",     "503",   "string-result",
          "400-json",    "403-json",    "503-json", "401",     "half",  "drip",
          "slow-header", "huge",        "gzip",     "deep",    "reset", "huge-chunked",
          "huge-header", "wrong-types", "cookie",   "close"})
        QTest::newRow(name) << QString::fromLatin1(name);
}

void TestSimScenario::faultNames()
{
    QFETCH(QString, name);
    const Scenario scenario = Scenario::parse(QLatin1String("rpc=") + name);
    QCOMPARE(scenario.faults.all == RpcFault::None, name == u"ok");
}

void TestSimScenario::streamFaultNames_data()
{
    QTest::addColumn<QString>("name");
    for (const char *name :
         {"ok",    "silent", "403",    "hang-up", "not-http", "close-0", "close-65535",
          "drop",  "reset",  "pieces", "endless", "large",    "pings",   "unread-pings",
          "flood", "half",   "mute",   "garbage", "binary",   "not-utf8"})
        QTest::newRow(name) << QString::fromLatin1(name);
}

void TestSimScenario::streamFaultNames()
{
    QFETCH(QString, name);
    const Scenario scenario = Scenario::parse(QLatin1String("stream=") + name);
    QCOMPARE(scenario.streamFaults.of(0).name(), name);
}

void TestSimScenario::signalNames_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<int>("number");
    QTest::newRow("SEGV") << QStringLiteral("SEGV") << SIGSEGV;
    QTest::newRow("SIGSEGV") << QStringLiteral("SIGSEGV") << SIGSEGV;
    QTest::newRow("ABRT") << QStringLiteral("ABRT") << SIGABRT;
    QTest::newRow("KILL") << QStringLiteral("KILL") << SIGKILL;
    QTest::newRow("TERM") << QStringLiteral("TERM") << SIGTERM;
    QTest::newRow("BUS") << QStringLiteral("BUS") << SIGBUS;
}

void TestSimScenario::signalNames()
{
    QFETCH(QString, name);
    QFETCH(int, number);
    const Scenario scenario = Scenario::parse(QLatin1String("signal=") + name);
    QVERIFY(scenario.ending->signaled);
    QCOMPARE(scenario.ending->number, number);
}

void TestSimScenario::refuses_data()
{
    QTest::addColumn<QString>("text");
    for (const char *text : {"speed",
                             "speed=",
                             "=1",
                             "sped=1",
                             "SPEED=1",
                             "speed=0",
                             "speed=-1",
                             "speed=fast",
                             "speed=1 2",
                             "peers=-1",
                             "peers=1.5",
                             "amendment-blocked=no",
                             "lists=",
                             "lists=unknown",
                             "warnings=",
                             "warnings=expired",
                             "warnings=other+",
                             "warnings=other+1003",
                             "clock-offset=soon",
                             "clock-offset=1.5",
                             "clock-offset=100000001",
                             "clock-offset=-100000001",
                             "io-latency=-1",
                             "io-latency=2.5",
                             "io-latency=1000001",
                             "load=0.9",
                             "load=-1",
                             "load=1000001",
                             "load=high",
                             "store=",
                             "store=none",
                             "store=NuDB",
                             "maintenance=sleeping",
                             "txns=5",
                             "txns=7-5",
                             "txns=-1-5",
                             "txns=1-2-3",
                             "txns=0-10001",
                             "ledger-interval=0",
                             "exit=256",
                             "exit=-1",
                             "signal=",
                             "signal=CHLD",
                             "signal=segv",
                             "after=-1",
                             "when=start",
                             "streams=open",
                             "flood=-1",
                             "listen=yes",
                             "start-delay=soon",
                             "stop=go",
                             "sigterm=obey",
                             "output=-1",
                             "output=1k",
                             "lines=0x10",
                             "rpc=bad",
                             "rpc.ping=ok",
                             "rpc=redirect",
                             "rpc.stop=redirect",
                             "redirect-port=0",
                             "redirect-port=65536",
                             "stream=",
                             "stream=bad",
                             "stream=ok+",
                             "stream=close",
                             "stream=close-65536",
                             "stream=close--1",
                             "stream-after=-1",
                             "stream-for=long",
                             "counts=full",
                             "process=yes",
                             "bootstrap=yes"})
        QTest::newRow(text) << QString::fromLatin1(text);
}

void TestSimScenario::refuses()
{
    QFETCH(QString, text);
    try {
        Scenario::parse(text);
        QFAIL("The scenario was accepted");
    } catch (const ScenarioError &error) {
        QVERIFY(!QByteArray(error.what()).contains('\n'));
        QVERIFY(*error.what() != '\0');
    }
}

void TestSimScenario::readsAFile()
{
    const TemporaryFolder folder;
    const std::filesystem::path file = folder.path() / "scenario of one.txt";
    writeFile(file, "# A quick one\nspeed=8\npeers=2, state=full\n");
    qputenv("TIDEWICK_SIMNODE", '@' + QByteArray::fromStdString(file));
    const Scenario scenario = Scenario::fromEnvironment();
    QCOMPARE(scenario.speed, 8.0);
    QCOMPARE(scenario.peers, 2);
    QCOMPARE(scenario.state, QStringLiteral("full"));
}

void TestSimScenario::needsTheFile()
{
    qputenv("TIDEWICK_SIMNODE", "@/nowhere/to be found");
    QVERIFY_THROWS_EXCEPTION(ScenarioError, Scenario::fromEnvironment());
}

TIDEWICK_TEST_MAIN(TestSimScenario)
#include "tst_simscenario.moc"
