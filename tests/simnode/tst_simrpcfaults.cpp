// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "AnsweringNode.h"
#include "support/Surroundings.h"

#include <QElapsedTimer>

#include <csignal>

using namespace tidewick;
using namespace std::chrono_literals;

/// Tests how the answers of the JSON-RPC port are transmitted, if at all, and when faults begin.
class TestSimRpcFaults : public QObject
{
    Q_OBJECT

private slots:
    void silent();
    void unread();
    void half();
    void reset();
    void drips_data();
    void drips();
    void huge_data();
    void huge();
    void hugeHeader();
    void closes();
    void affectsOneMethod();
    void beginsLater();
    void carriesOutTheCommand_data();
    void carriesOutTheCommand();
};

void TestSimRpcFaults::silent()
{
    AnsweringNode node("rpc=silent");
    RawClient client(node.rpcPort());
    client.call("server_info");
    QVERIFY(node.waitForLog("RPCHandler:NFO server_info"));
    QCOMPARE(client.read([](const QByteArray &) { return false; }, 200ms), QByteArray());
    QCOMPARE(client.state(), RawClient::State::Open);
}

void TestSimRpcFaults::unread()
{
    const AnsweringNode node("rpc=unread");
    RawClient client(node.rpcPort());
    client.call("server_info");
    QCOMPARE(client.read([](const QByteArray &) { return false; }, 300ms), QByteArray());
    QCOMPARE(client.state(), RawClient::State::Open);
    QVERIFY(!node.debugLog().contains("RPCHandler"));
}

void TestSimRpcFaults::half()
{
    const AnsweringNode node("rpc=half");
    RawClient client(node.rpcPort());
    client.call("server_info");
    const HttpAnswer answer = client.readAnswer();
    QCOMPARE(client.state(), RawClient::State::Closed);
    QCOMPARE(answer.body.size(), answer.headers["content-length"].toInt() / 2);
}

void TestSimRpcFaults::reset()
{
    const AnsweringNode node("rpc=reset");
    RawClient client(node.rpcPort());
    client.call("server_info");
    client.readAnswer();
    QCOMPARE(client.state(), RawClient::State::Reset);
}

void TestSimRpcFaults::drips_data()
{
    QTest::addColumn<QByteArray>("kind");
    QTest::addColumn<bool>("head");
    QTest::newRow("drip") << QByteArray("drip") << true;
    QTest::newRow("slow-header") << QByteArray("slow-header") << false;
}

void TestSimRpcFaults::drips()
{
    QFETCH(QByteArray, kind);
    QFETCH(bool, head);
    const AnsweringNode node("rpc=" + kind);
    RawClient client(node.rpcPort());
    QElapsedTimer timer;
    timer.start();
    client.call("server_info");
    const auto slowly = [head](const QByteArray &sofar) {
        return head ? HttpAnswer::read(sofar).value_or(HttpAnswer()).body : sofar;
    };
    const QByteArray seen =
        slowly(client.read([&](const QByteArray &sofar) { return slowly(sofar).size() >= 2; }));
    const qint64 elapsed = timer.elapsed();
    QVERIFY(seen.size() >= 2);
    QVERIFY(seen.startsWith(head ? "{\"" : "HT"));
    // One second between two bytes, less up to 5% for a coarse timer. A delayed client sees several
    // at once.
    QVERIFY2(elapsed >= (seen.size() - 1) * 900, qPrintable(QString::number(elapsed)));
}

void TestSimRpcFaults::huge_data()
{
    QTest::addColumn<QByteArray>("kind");
    QTest::addColumn<bool>("announced");
    QTest::newRow("announced") << QByteArray("huge") << true;
    QTest::newRow("chunked") << QByteArray("huge-chunked") << false;
}

void TestSimRpcFaults::huge()
{
    QFETCH(QByteArray, kind);
    QFETCH(bool, announced);
    const AnsweringNode node("rpc=" + kind);
    RawClient client(node.rpcPort());
    client.call("server_info");
    const QByteArray begin =
        client.read([](const QByteArray &sofar) { return sofar.contains("\r\n\r\n"); });
    const HttpAnswer answer = HttpAnswer::read(begin).value();
    QCOMPARE(answer.headers.value("content-length"), QByteArray(announced ? "200000000" : ""));
    QCOMPARE(answer.headers.value("transfer-encoding"), QByteArray(announced ? "" : "chunked"));
    const qint64 length = answer.body.size() + client.readAway();
    QVERIFY(announced ? length == 200'000'000 : length > 200'000'000);
    QVERIFY(node.peakMemory() > 0);
    QVERIFY2(node.peakMemory() < 150'000'000, "The node keeps the whole answer in memory");
}

void TestSimRpcFaults::hugeHeader()
{
    const AnsweringNode node("rpc=huge-header");
    RawClient client(node.rpcPort());
    client.call("server_info");
    const QByteArray begin =
        client.read([](const QByteArray &sofar) { return sofar.contains("X-Filler: x"); });
    QVERIFY(begin.startsWith("HTTP/1.1 200 OK\r\n"));
    QVERIFY(!begin.contains("\r\n\r\n"));
    QVERIFY(begin.size() + client.readAway() > 200'000'000);
    QVERIFY2(node.peakMemory() < 150'000'000, "The node keeps the whole header in memory");
}

void TestSimRpcFaults::closes()
{
    const AnsweringNode node("rpc=close");
    RawClient client(node.rpcPort());
    client.call("server_info");
    QVERIFY(isUsual(client.readAnswer().body));
    QCOMPARE(client.readAway(), 0);
    QCOMPARE(client.state(), RawClient::State::Closed);
}

void TestSimRpcFaults::affectsOneMethod()
{
    const AnsweringNode node("rpc.get_counts=503");
    QCOMPARE(node.ask("server_info").status, 200);
    QCOMPARE(node.ask("get_counts").status, 503);
    const AnsweringNode other("rpc=503 rpc.get_counts=ok", 1);
    QCOMPARE(other.ask("server_info").status, 503);
    QCOMPARE(other.ask("get_counts").status, 200);
}

void TestSimRpcFaults::beginsLater()
{
    QElapsedTimer timer;
    timer.start();
    const AnsweringNode node("rpc=503 rpc-after=1");
    QTRY_COMPARE_WITH_TIMEOUT(node.ask().status, 503, 10'000);
    QVERIFY(timer.elapsed() >= 1000);

    const AnsweringNode told("rpc=503 rpc-after=usr1", 1);
    QCOMPARE(told.ask().status, 200);
    told.signal(SIGUSR1);
    QTRY_COMPARE(told.ask().status, 503);
}

void TestSimRpcFaults::carriesOutTheCommand_data()
{
    QTest::addColumn<QByteArray>("kind");
    QTest::addColumn<bool>("stops");
    for (const char *kind : {"ok", "recorded", "503-json", "half", "reset", "drip", "gzip",
                             "cookie", "close", "wrong-types", "slow-header"})
        QTest::newRow(kind) << QByteArray(kind) << true;
    for (const char *kind : {"silent", "garbage", "error", "403", "401", "redirect", "deep"})
        QTest::newRow(kind) << QByteArray(kind) << false;
}

void TestSimRpcFaults::carriesOutTheCommand()
{
    QFETCH(QByteArray, kind);
    QFETCH(bool, stops);
    AnsweringNode node("rpc.stop=" + kind);
    RawClient client(node.rpcPort());
    client.call("stop");
    QVERIFY(node.waitForLog("RPCHandler:NFO stop"));
    if (stops) {
        QCOMPARE(node.waitForEnd(), (SimulatedNode::Ending{0, false}));
    } else {
        QVERIFY(isUsual(node.ask().body));
        QVERIFY(!node.debugLog().contains("Server stopping"));
    }
}

TIDEWICK_LOOPBACK_TEST_MAIN(TestSimRpcFaults)
#include "tst_simrpcfaults.moc"
