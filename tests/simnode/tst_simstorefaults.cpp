// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "RawClient.h"
#include "SimulatedNode.h"
#include "support/Surroundings.h"
#include "support/TestFiles.h"

#include <csignal>

using namespace tidewick;
namespace fs = std::filesystem;

using Ending = SimulatedNode::Ending;

namespace {

constexpr const char *quick = "start-delay=0 stop-delay=0 store=";

} // namespace

/// Tests nodes that cannot use their store.
class TestSimStoreFaults : public QObject
{
    Q_OBJECT

private slots:
    void ends_data();
    void ends();
    void comesUp_data();
    void comesUp();
    void comesUpOnceCleared_data();
    void comesUpOnceCleared();
};

void TestSimStoreFaults::ends_data()
{
    QTest::addColumn<QByteArray>("fault");
    QTest::addColumn<QByteArrayList>("lines");
    QTest::addColumn<int>("number");
    QTest::addColumn<bool>("signaled");
    const auto row = [](const char *fault, const QByteArrayList &lines, int number, bool signaled) {
        QTest::newRow(fault) << QByteArray(fault) << lines << number << signaled;
    };
    row("damaged",
        {"Terminating thread rpc: std::runtime_error: short read [nudb:3]",
         "terminate called after throwing an instance of 'std::runtime_error'"},
        SIGABRT, true);
    row("damaged-index", {"state db error: file is not a database"}, 255, false);
    row("stock", {"Your xrpld.cfg is missing a [node_db] entry or its type is unknown"}, SIGABRT,
        true);
}

void TestSimStoreFaults::ends()
{
    QFETCH(QByteArray, fault);
    QFETCH(QByteArrayList, lines);
    QFETCH(int, number);
    QFETCH(bool, signaled);
    SimulatedNode node;
    fs::create_directory(node.store());
    writeFile(node.store() / "nudb.dat", "half a file");
    node.start(quick + fault);
    QCOMPARE(node.waitForEnd(), (Ending{number, signaled}));
    QByteArrayList printed = node.standardError().trimmed().split('\n');
    QVERIFY(printed.takeFirst().contains("SIMULATED"));
    QCOMPARE(printed, lines);
    QCOMPARE(node.standardOutput(), QByteArray());
    QVERIFY(!node.debugLog().contains("Opened"));
    QCOMPARE(contentOf(node.store() / "nudb.dat"), QByteArray("half a file"));
}

void TestSimStoreFaults::comesUp_data()
{
    QTest::addColumn<QByteArray>("fault");
    QTest::addColumn<QByteArray>("type");
    QTest::addColumn<bool>("emptyFolder");
    QTest::newRow("nothing damaged") << QByteArray("damaged") << QByteArray("Mossgrid") << false;
    QTest::newRow("nothing damaged, NuDB") << QByteArray("damaged") << QByteArray("NuDB") << false;
    QTest::newRow("nothing damaged, an empty folder")
        << QByteArray("damaged") << QByteArray("NuDB") << true;
    QTest::newRow("no index") << QByteArray("damaged-index") << QByteArray("Mossgrid") << false;
    QTest::newRow("no index, an empty folder")
        << QByteArray("damaged-index") << QByteArray("Mossgrid") << true;
    QTest::newRow("stock") << QByteArray("stock") << QByteArray("NuDB") << true;
}

void TestSimStoreFaults::comesUp()
{
    QFETCH(QByteArray, fault);
    QFETCH(QByteArray, type);
    QFETCH(bool, emptyFolder);
    SimulatedNode node;
    node.configuration.replace("type = Mossgrid", "type = " + type);
    if (emptyFolder)
        fs::create_directory(node.store());
    node.start(quick + fault);
    QVERIFY(node.waitUntilOpen());
    QCOMPARE(node.ask("server_info")[u"status"].toString(), QStringLiteral("success"));
    QVERIFY(node.standardError().trimmed().endsWith("it is on no network"));
}

void TestSimStoreFaults::comesUpOnceCleared_data()
{
    QTest::addColumn<QByteArray>("fault");
    QTest::addColumn<Ending>("ending");
    QTest::newRow("damaged") << QByteArray("damaged") << Ending{SIGABRT, true};
    QTest::newRow("damaged-index") << QByteArray("damaged-index") << Ending{255, false};
}

void TestSimStoreFaults::comesUpOnceCleared()
{
    QFETCH(QByteArray, fault);
    QFETCH(Ending, ending);
    SimulatedNode node;
    node.start("start-delay=0 stop-delay=0");
    QVERIFY(node.waitUntilOpen());
    node.signal(SIGTERM);
    QCOMPARE(node.waitForEnd(), (Ending{0, false}));
    QVERIFY(!fs::is_empty(node.store()));

    for (int attempt = 0; attempt < 2; ++attempt) {
        node.start(quick + fault);
        QCOMPARE(node.waitForEnd(), ending);
    }
    fs::remove_all(node.store());
    node.start(quick + fault);
    QVERIFY(node.waitUntilOpen());
}

TIDEWICK_LOOPBACK_TEST_MAIN(TestSimStoreFaults)
#include "tst_simstorefaults.moc"
