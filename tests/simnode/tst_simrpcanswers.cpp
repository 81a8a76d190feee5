// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "AnsweringNode.h"
#include "platform/json/JsonRead.h"
#include "support/Surroundings.h"

#include <QJsonArray>
#include <QProcess>

using namespace tidewick;

/// Tests the correct and incorrect answers of the JSON-RPC port that arrive completely.
class TestSimRpcAnswers : public QObject
{
    Q_OBJECT

private slots:
    void answersProperly();
    void answersOnLists_data();
    void answersOnLists();
    void answersInSequence();
    void refusesWhatItCannotRead_data();
    void refusesWhatItCannotRead();
    void answersCompletely_data();
    void answersCompletely();
    void gzip();
    void deep();
    void wrongTypes();
    void cookie();
    void recorded();
};

void TestSimRpcAnswers::answersProperly()
{
    const AnsweringNode node("");
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

void TestSimRpcAnswers::answersOnLists_data()
{
    QTest::addColumn<QByteArray>("scenario");
    QTest::addColumn<QString>("status");
    QTest::addColumn<QString>("refresh");
    QTest::addColumn<int>("warnings");
    const auto row = [](const char *scenario, const char *status, const char *refresh,
                        int warnings) {
        QTest::newRow(scenario) << QByteArray(scenario) << QString::fromLatin1(status)
                                << QString::fromLatin1(refresh) << warnings;
    };
    row("lists=active", "active", "accepted", 0);
    row("lists=expiring", "active", "accepted", 0);
    row("lists=none", "unknown", "invalid", 1);
    row("lists=expired warnings=other", "expired", "invalid", 2);
}

void TestSimRpcAnswers::answersOnLists()
{
    QFETCH(QByteArray, scenario);
    QFETCH(QString, status);
    QFETCH(QString, refresh);
    QFETCH(int, warnings);
    const AnsweringNode node(scenario);
    const SimulatedNode &simulated = node;
    const QJsonObject info = simulated.ask("server_info")[u"info"].toObject();
    QCOMPARE(info[u"validator_list"][u"status"].toString(), status);
    QCOMPARE(info[u"warnings"].toArray().size(), warnings);
    QCOMPARE(simulated.ask("validator_list_sites")[u"validator_sites"][1][u"last_refresh_status"]
                 .toString(),
             refresh);
    QCOMPARE(simulated.ask("validators")[u"validator_list"], info[u"validator_list"]);
    // Without valid lists the node does not advance any further.
    if (warnings > 0)
        QCOMPARE(info[u"server_state"].toString(), QStringLiteral("connected"));
}

void TestSimRpcAnswers::answersInSequence()
{
    const AnsweringNode node("");
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

void TestSimRpcAnswers::refusesWhatItCannotRead_data()
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

void TestSimRpcAnswers::refusesWhatItCannotRead()
{
    QFETCH(QByteArray, bytes);
    QFETCH(int, status);
    const AnsweringNode node("");
    RawClient client(node.rpcPort());
    client.send(bytes);
    QCOMPARE(client.readAnswer().status, status);
    QVERIFY(isUsual(node.ask().body));
}

void TestSimRpcAnswers::answersCompletely_data()
{
    QTest::addColumn<QByteArray>("kind");
    QTest::addColumn<int>("status");
    QTest::addColumn<QByteArray>("header");
    // Empty for the normal body.
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

void TestSimRpcAnswers::answersCompletely()
{
    QFETCH(QByteArray, kind);
    QFETCH(int, status);
    QFETCH(QByteArray, header);
    QFETCH(QByteArray, body);
    const AnsweringNode node("rpc=" + kind);
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

void TestSimRpcAnswers::gzip()
{
    const AnsweringNode node("rpc=gzip");
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

void TestSimRpcAnswers::deep()
{
    const AnsweringNode node("rpc=deep");
    const HttpAnswer answer = node.ask();
    QCOMPARE(answer.body.count('['), 5000);
    QCOMPARE(answer.body.count(']'), 5000);
    QVERIFY(!JsonRead::parseObject(answer.body));
}

void TestSimRpcAnswers::wrongTypes()
{
    const AnsweringNode node("rpc=wrong-types");
    const QJsonValue info = JsonRead::parseObject(node.ask().body).value()[u"result"][u"info"];
    QVERIFY(info[u"peers"].isArray());
    QVERIFY(info[u"server_state"].isDouble());
    QVERIFY(info[u"closed_ledger"][u"seq"].isArray());
    const QJsonValue counts = JsonRead::parseObject(node.ask("get_counts").body).value()[u"result"];
    QVERIFY(counts[u"stream_bootstrap"][u"enabled"].isObject());
    QVERIFY(counts[u"mossgrid_maintenance"][u"phase"].isDouble());
}

void TestSimRpcAnswers::cookie()
{
    AnsweringNode node("rpc=cookie");
    const HttpAnswer answer = node.ask();
    QVERIFY(isUsual(answer.body));
    QVERIFY(answer.headers["set-cookie"].startsWith("simulated=1"));
    QVERIFY(!node.debugLog().contains("cookie"));
    RawClient client(node.rpcPort());
    client.call("server_info", "Cookie: simulated=1\r\n");
    QVERIFY(node.waitForLog("cookie simulated=1"));
}

void TestSimRpcAnswers::recorded()
{
    const std::filesystem::path wire = std::filesystem::path(TIDEWICK_TEST_DATA) / "wire";
    const AnsweringNode node("rpc=recorded");
    for (const std::string method : {"server_info", "get_counts"}) {
        const QByteArray name = QByteArray::fromStdString(method);
        QCOMPARE(node.ask(name).body, contentOf(wire / (method + ".json")));
        QCOMPARE(node.ask(name).body, contentOf(wire / (method + "_later.json")));
        QCOMPARE(node.ask(name).body, contentOf(wire / (method + "_later.json")));
    }
    QVERIFY(node.ask("no_such_method").body.contains("unknownCmd"));
    QCOMPARE(node.ask("stop").body, contentOf(wire / "stop.json"));
}

TIDEWICK_LOOPBACK_TEST_MAIN(TestSimRpcAnswers)
#include "tst_simrpcanswers.moc"
