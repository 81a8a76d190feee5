// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "RawClient.h"
#include "SimulatedNode.h"
#include "platform/JsonRead.h"
#include "platform/ProcessMemory.h"
#include "support/Surroundings.h"

#include <QElapsedTimer>
#include <QJsonArray>
#include <QProcess>

#include <csignal>

using namespace tidewick;
using namespace std::chrono_literals;

namespace {

bool isUsual(const QByteArray &body)
{
    const auto answer = JsonRead::parseObject(body);
    return answer && (*answer)[u"result"][u"info"][u"uptime"].isDouble();
}

/// A node that answers in this way, once it answers.
class Node : public SimulatedNode
{
public:
    explicit Node(const QByteArray &scenario, quint16 number = 0) : SimulatedNode(number)
    {
        start("start-delay=0 stop-delay=0 redirect-port=4711 " + scenario);
        if (!waitUntilOpen())
            qFatal("The node does not open its port");
    }

    HttpAnswer ask(const QByteArray &method = "server_info") const
    {
        RawClient client(rpcPort());
        client.call(method);
        return client.readAnswer();
    }

    qint64 peakMemory() const
    {
        const auto memory = ProcessMemory::of(id());
        return memory ? memory->peakFootprint : -1;
    }
};

} // namespace

class TestSimRpcFaults : public QObject
{
    Q_OBJECT

private slots:
    void answersProperly();
    void answersOneAfterTheOther();
    void refusesWhatItCannotRead_data();
    void refusesWhatItCannotRead();
    void answersWholly_data();
    void answersWholly();
    void silent();
    void unread();
    void half();
    void reset();
    void drips_data();
    void drips();
    void huge_data();
    void huge();
    void hugeHeader();
    void gzip();
    void deep();
    void wrongTypes();
    void cookie();
    void closes();
    void recorded();
    void ofOneMethod();
    void beginsLater();
    void carriesOutTheCommand_data();
    void carriesOutTheCommand();
};

void TestSimRpcFaults::answersProperly()
{
    const Node node("");
    const HttpAnswer answer = node.ask();
    QCOMPARE(answer.status, 200);
    QCOMPARE(answer.headers["content-type"], QByteArray("application/json; charset=UTF-8"));
    QVERIFY(isUsual(answer.body));
    QVERIFY(answer.body.endsWith("}}\n\r\n"));

    const HttpAnswer unknown = node.ask("no_such_method");
    QCOMPARE(unknown.status, 200);
    QVERIFY(unknown.body.contains("unknownCmd"));
    QCOMPARE(node.ask("stop").status, 200);
}

void TestSimRpcFaults::answersOneAfterTheOther()
{
    const Node node("");
    RawClient client(node.rpcPort());
    for (int i = 0; i < 3; ++i) {
        client.call("server_info");
        QVERIFY(isUsual(client.readAnswer().body));
    }
    client.call("server_info");
    client.call("server_info", "Connection: close\r\n");
    const QByteArray both = client.read([](const QByteArray &) { return false; });
    QCOMPARE(both.count("HTTP/1.1 200 OK"), 2);
    QCOMPARE(client.state(), RawClient::State::Closed);
}

void TestSimRpcFaults::refusesWhatItCannotRead_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<int>("status");
    QTest::newRow("not JSON") << QByteArray("POST / HTTP/1.1\r\nContent-Length: 4\r\n\r\n{]--")
                              << 400;
    QTest::newRow("no object") << QByteArray("POST / HTTP/1.1\r\nContent-Length: 2\r\n\r\n[]")
                               << 400;
    QTest::newRow("no method") << QByteArray("POST / HTTP/1.1\r\nContent-Length: 2\r\n\r\n{}")
                               << 400;
    QTest::newRow("GET") << QByteArray("GET / HTTP/1.1\r\n\r\n") << 405;
    QTest::newRow("not HTTP") << QByteArray("hello\r\n\r\n") << 400;
    QTest::newRow("too large") << QByteArray("POST / HTTP/1.1\r\nContent-Length: 2000000\r\n\r\n")
                               << 413;
    QTest::newRow("endless") << QByteArray(100'000, 'x') << 413;
}

void TestSimRpcFaults::refusesWhatItCannotRead()
{
    QFETCH(QByteArray, bytes);
    QFETCH(int, status);
    const Node node("");
    RawClient client(node.rpcPort());
    client.send(bytes);
    QCOMPARE(client.readAnswer().status, status);
    QVERIFY(isUsual(node.ask().body));
}

void TestSimRpcFaults::answersWholly_data()
{
    QTest::addColumn<QByteArray>("kind");
    QTest::addColumn<int>("status");
    QTest::addColumn<QByteArray>("header");
    // Empty: the usual one.
    QTest::addColumn<QByteArray>("body");

    const auto row = [](const char *kind, int status, const char *header, const char *body) {
        QTest::newRow(kind) << QByteArray(kind) << status << QByteArray(header) << QByteArray(body);
    };
    row("ok", 200, "", "");
    row("garbage", 200, "", "\x01\xFE{]not JSON at all");
    row("array", 200, "", R"([{"result":{"status":"success"}}])");
    row("array-result", 200, "", R"({"result":["status","success"]})");
    row("string-result", 200, "", R"({"result":"success"})");
    row("no-result", 200, "", "{}");
    row("error", 200, "", R"({"result":{"error":"internal","error_code":73,"status":"error"}})");
    row("400", 400, "", "no such luck\r\n");
    row("403", 403, "", "not for you\r\n");
    row("503", 503, "", "too busy\r\n");
    row("400-json", 400, "", "");
    row("403-json", 403, "", "");
    row("503-json", 503, "", "");
    row("401", 401, "www-authenticate: Basic realm=\"simulated\"", "who are you?\r\n");
    row("redirect", 302, "location: http://127.0.0.1:4711/", "not here\r\n");
}

void TestSimRpcFaults::answersWholly()
{
    QFETCH(QByteArray, kind);
    QFETCH(int, status);
    QFETCH(QByteArray, header);
    QFETCH(QByteArray, body);
    const Node node("rpc=" + kind);
    const HttpAnswer answer = node.ask();
    QCOMPARE(answer.status, status);
    if (body.isEmpty())
        QVERIFY(isUsual(answer.body));
    else
        QCOMPARE(answer.body, body);
    if (!header.isEmpty())
        QCOMPARE(answer.headers.value(header.split(':').first()),
                 header.mid(header.indexOf(' ') + 1));
    const bool json = answer.headers["content-type"].startsWith("application/json");
    QCOMPARE(json, status == 200 || body.isEmpty());
}

void TestSimRpcFaults::silent()
{
    Node node("rpc=silent");
    RawClient client(node.rpcPort());
    client.call("server_info");
    QVERIFY(node.waitForLog("RPCHandler:NFO server_info"));
    QCOMPARE(client.read([](const QByteArray &) { return false; }, 200ms), QByteArray());
    QCOMPARE(client.state(), RawClient::State::Open);
}

void TestSimRpcFaults::unread()
{
    const Node node("rpc=unread");
    RawClient client(node.rpcPort());
    client.call("server_info");
    QCOMPARE(client.read([](const QByteArray &) { return false; }, 300ms), QByteArray());
    QCOMPARE(client.state(), RawClient::State::Open);
    QVERIFY(!node.debugLog().contains("RPCHandler"));
}

void TestSimRpcFaults::half()
{
    const Node node("rpc=half");
    RawClient client(node.rpcPort());
    client.call("server_info");
    const HttpAnswer answer = client.readAnswer();
    QCOMPARE(client.state(), RawClient::State::Closed);
    QCOMPARE(answer.body.size(), answer.headers["content-length"].toInt() / 2);
}

void TestSimRpcFaults::reset()
{
    const Node node("rpc=reset");
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
    const Node node("rpc=" + kind);
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
    // A second between two bytes, of which a coarse timer may lack a twentieth. A client that is
    // held up sees several at once.
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
    const Node node("rpc=" + kind);
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
    QVERIFY2(node.peakMemory() < 150'000'000, "It did not keep it all in memory");
}

void TestSimRpcFaults::hugeHeader()
{
    const Node node("rpc=huge-header");
    RawClient client(node.rpcPort());
    client.call("server_info");
    const QByteArray begin =
        client.read([](const QByteArray &sofar) { return sofar.contains("X-Filler: x"); });
    QVERIFY(begin.startsWith("HTTP/1.1 200 OK\r\n"));
    QVERIFY(!begin.contains("\r\n\r\n"));
    QVERIFY(begin.size() + client.readAway() > 200'000'000);
    QVERIFY2(node.peakMemory() < 150'000'000, "It did not keep it all in memory");
}

void TestSimRpcFaults::gzip()
{
    const Node node("rpc=gzip");
    const HttpAnswer answer = node.ask();
    QCOMPARE(answer.headers["content-encoding"], QByteArray("gzip"));
    QVERIFY(answer.body.startsWith("\x1F\x8B"));
    QVERIFY(answer.body.size() < 1500);

    QProcess gunzip;
    gunzip.start(QStringLiteral("gzip"), {QStringLiteral("-dc")});
    gunzip.write(answer.body);
    gunzip.closeWriteChannel();
    QVERIFY(gunzip.waitForFinished());
    QCOMPARE(gunzip.exitCode(), 0);
    QVERIFY(isUsual(gunzip.readAllStandardOutput()));
}

void TestSimRpcFaults::deep()
{
    const Node node("rpc=deep");
    const HttpAnswer answer = node.ask();
    QCOMPARE(answer.body.count('['), 5000);
    QCOMPARE(answer.body.count(']'), 5000);
    QVERIFY(!JsonRead::parseObject(answer.body));
}

void TestSimRpcFaults::wrongTypes()
{
    const Node node("rpc=wrong-types");
    const QJsonValue info = JsonRead::parseObject(node.ask().body).value()[u"result"][u"info"];
    QVERIFY(info[u"peers"].isArray());
    QVERIFY(info[u"server_state"].isDouble());
    QVERIFY(info[u"closed_ledger"][u"seq"].isArray());
    const QJsonValue counts = JsonRead::parseObject(node.ask("get_counts").body).value()[u"result"];
    QVERIFY(counts[u"stream_bootstrap"][u"enabled"].isObject());
    QVERIFY(counts[u"mossgrid_maintenance"][u"phase"].isDouble());
}

void TestSimRpcFaults::cookie()
{
    Node node("rpc=cookie");
    const HttpAnswer answer = node.ask();
    QVERIFY(isUsual(answer.body));
    QVERIFY(answer.headers["set-cookie"].startsWith("simulated=1"));
    QVERIFY(!node.debugLog().contains("cookie"));
    RawClient client(node.rpcPort());
    client.call("server_info", "Cookie: simulated=1\r\n");
    QVERIFY(node.waitForLog("cookie simulated=1"));
}

void TestSimRpcFaults::closes()
{
    const Node node("rpc=close");
    RawClient client(node.rpcPort());
    client.call("server_info");
    QVERIFY(isUsual(client.readAnswer().body));
    QCOMPARE(client.readAway(), 0);
    QCOMPARE(client.state(), RawClient::State::Closed);
}

void TestSimRpcFaults::recorded()
{
    const std::filesystem::path wire = std::filesystem::path(TIDEWICK_TEST_DATA) / "wire";
    const Node node("rpc=recorded");
    for (const std::string method : {"server_info", "get_counts"}) {
        const QByteArray name = QByteArray::fromStdString(method);
        QCOMPARE(node.ask(name).body, contentOf(wire / (method + ".json")));
        QCOMPARE(node.ask(name).body, contentOf(wire / (method + "_later.json")));
        QCOMPARE(node.ask(name).body, contentOf(wire / (method + "_later.json")));
    }
    QVERIFY(node.ask("no_such_method").body.contains("unknownCmd"));
    QCOMPARE(node.ask("stop").body, contentOf(wire / "stop.json"));
}

void TestSimRpcFaults::ofOneMethod()
{
    const Node node("rpc.get_counts=503");
    QCOMPARE(node.ask("server_info").status, 200);
    QCOMPARE(node.ask("get_counts").status, 503);
    const Node other("rpc=503 rpc.get_counts=ok", 1);
    QCOMPARE(other.ask("server_info").status, 503);
    QCOMPARE(other.ask("get_counts").status, 200);
}

void TestSimRpcFaults::beginsLater()
{
    const Node node("rpc=503 rpc-after=2");
    QCOMPARE(node.ask().status, 200);
    QTRY_COMPARE_WITH_TIMEOUT(node.ask().status, 503, 10'000);

    const Node told("rpc=503 rpc-after=usr1", 1);
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
    Node node("rpc.stop=" + kind);
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
