// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "node/NodeRPC.h"
#include "support/RawServer.h"
#include "support/RpcCall.h"
#include "support/Surroundings.h"
#include "support/TestFiles.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QNetworkProxy>
#include <QTcpSocket>

using namespace tidewick;

using Result = std::optional<QJsonObject>;

/// Tests the requests, and what counts as an answer.
class TestNodeRPCAnswers : public QObject
{
    Q_OBJECT

private slots:
    void sendsTheEnvelope();
    void answers_data();
    void answers();
    void recordedAnswers_data();
    void recordedAnswers();
    void redirectsAreNotFollowed_data();
    void redirectsAreNotFollowed();
    void keepsNothingBetweenCalls();
    void usesNoProxy();
    void callsMayOverlap();
    void survivesDisconnects();
    void destroyedDuringACall();
};

void TestNodeRPCAnswers::sendsTheEnvelope()
{
    RawServer server([](QTcpSocket *c) { c->write(RawServer::http("{\"result\":{}}")); });
    QVERIFY(rpcResult(server.port(), QStringLiteral("get \"counts\" é")));
    QCOMPARE(server.requests().size(), 1);
    const QByteArray request = server.requests()[0];
    QVERIFY(request.startsWith("POST / HTTP/1.1\r\n"));
    QVERIFY(request.contains("\r\nContent-Type: application/json\r\n"));
    QVERIFY(request.contains("\r\nHost: 127.0.0.1:" + QByteArray::number(server.port())));
    QVERIFY(request.contains("\r\nAccept-Encoding: identity\r\n"));
    const QByteArray body = request.mid(request.indexOf("\r\n\r\n") + 4);
    const QJsonObject expected{{QStringLiteral("method"), QStringLiteral("get \"counts\" é")},
                               {QStringLiteral("params"), QJsonArray{QJsonObject()}}};
    QCOMPARE(QJsonDocument::fromJson(body).object(), expected);
}

void TestNodeRPCAnswers::answers_data()
{
    QTest::addColumn<QByteArray>("answer");
    QTest::addColumn<Result>("expected");
    const auto row = [](const char *name, const QByteArray &answer, const Result &expected = {}) {
        QTest::newRow(name) << answer << expected;
    };
    const auto ok = [](const QByteArray &body) { return RawServer::http(body); };
    const QJsonObject error{{QStringLiteral("status"), QStringLiteral("error")}};
    const QByteArray errorBody = R"({"result":{"status":"error"}})";

    row("empty result", ok(R"({"result":{}})"), QJsonObject());
    row("error result", ok(errorBody), error);
    row("error next to the result", ok(R"({"error":"x","result":{}})"), QJsonObject());
    row("no result", ok(R"({"status":"success"})"));
    row("array result", ok(R"({"result":[]})"));
    row("text result", ok(R"({"result":"x"})"));
    row("null result", ok(R"({"result":null})"));
    row("array", ok("[]"));
    row("empty body", ok(""));
    row("garbage", ok("\x01\xFF garbage"));
    row("truncated JSON", ok(R"({"result":{)"));
    row("deep", ok(R"({"result":)" + QByteArray(5000, '[') + QByteArray(5000, ']') + '}'));
    row("not HTTP", "garbage\r\n\r\n");
    row("chunked",
        "HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\n\r\n"
        "5\r\n{\"res\r\nA\r\nult\":{}}\r\n\r\n0\r\n\r\n",
        QJsonObject());
    row("to the end of the connection", "HTTP/1.0 200 OK\r\n\r\n{\"result\":{}}", QJsonObject());
    row("half the body", "HTTP/1.1 200 OK\r\nContent-Length: 100\r\n\r\n{\"result\":{}}");
    row("truncated chunks",
        "HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\n\r\nD\r\n{\"result\":{}}");
    row("half the headers", "HTTP/1.1 200 OK\r\nContent-Le");
    for (const char *status :
         {"400 Bad Request", "401 Unauthorized", "403 Forbidden", "404 Not Found",
          "405 Method Not Allowed", "407 Proxy Authentication Required", "409 Conflict", "410 Gone",
          "418 Teapot", "422 Unprocessable", "500 Internal Server Error", "501 Not Implemented",
          "503 Service Unavailable", "599 Other"}) {
        QTest::addRow("%s, JSON", status) << RawServer::http(errorBody, status) << Result(error);
        QTest::addRow("%s, text", status) << RawServer::http("no", status) << Result();
    }
}

void TestNodeRPCAnswers::answers()
{
    QFETCH(QByteArray, answer);
    QFETCH(Result, expected);
    RawServer server([&](QTcpSocket *connection) {
        connection->write(answer);
        connection->disconnectFromHost();
    });
    QCOMPARE(rpcResult(server.port()), expected);
}

void TestNodeRPCAnswers::recordedAnswers_data()
{
    QTest::addColumn<QByteArray>("file");
    QTest::addColumn<QString>("member");
    QTest::newRow("server_info") << QByteArray("server_info.json") << QStringLiteral("info");
    QTest::newRow("get_counts") << QByteArray("get_counts.json") << QStringLiteral("node_writes");
    QTest::newRow("stop") << QByteArray("stop.json") << QStringLiteral("message");
    QTest::newRow("unknown") << QByteArray("unknown_method.json") << QStringLiteral("error");
    QTest::newRow("not understood") << QByteArray("bad_json.txt") << QString();
}

void TestNodeRPCAnswers::recordedAnswers()
{
    QFETCH(QByteArray, file);
    QFETCH(QString, member);
    const QByteArray body = contentOf(TIDEWICK_TEST_DATA "/wire/" + file.toStdString());
    RawServer server([&](QTcpSocket *connection) {
        connection->write(RawServer::http(body, member.isEmpty() ? "400 Bad Request" : "200 OK"));
    });
    const Result result = rpcResult(server.port());
    QCOMPARE(result.has_value(), !member.isEmpty());
    if (result)
        QVERIFY(result->contains(member));
}

void TestNodeRPCAnswers::redirectsAreNotFollowed_data()
{
    QTest::addColumn<QByteArray>("status");
    for (const char *status :
         {"301 Moved", "302 Found", "303 See Other", "307 Temporary", "308 Permanent"})
        QTest::newRow(status) << QByteArray(status);
}

void TestNodeRPCAnswers::redirectsAreNotFollowed()
{
    QFETCH(QByteArray, status);
    RawServer target([](QTcpSocket *c) { c->write(RawServer::http("{\"result\":{}}")); });
    const QByteArray location =
        "Location: http://127.0.0.1:" + QByteArray::number(target.port()) + "/\r\n";
    RawServer server(
        [&](QTcpSocket *c) { c->write(RawServer::http("see there", status, location)); });
    QVERIFY(!rpcResult(server.port()));
    QCOMPARE(target.connections(), 0);
}

void TestNodeRPCAnswers::keepsNothingBetweenCalls()
{
    RawServer server([](QTcpSocket *c) {
        c->write(RawServer::http("{\"result\":{}}", "200 OK",
                                 "Set-Cookie: a=b\r\nCache-Control: max-age=1000\r\n"
                                 "ETag: \"x\"\r\n"));
    });
    NodeRPC rpc(server.port());
    for (int i = 0; i < 3; ++i) {
        const RpcCall call(rpc, QStringLiteral("server_info"));
        QTRY_VERIFY(call.finished());
        QVERIFY(call.result());
    }
    QCOMPARE(server.requests().size(), 3);
    for (const QByteArray &request : server.requests()) {
        QVERIFY(!request.contains("Cookie"));
        QVERIFY(!request.contains("If-"));
        QVERIFY(!request.contains("Authorization"));
    }
}

void TestNodeRPCAnswers::usesNoProxy()
{
    RawServer proxy([](QTcpSocket *c) { c->write(RawServer::http("{\"result\":{}}")); });
    RawServer server([](QTcpSocket *c) { c->write(RawServer::http("{\"result\":{}}")); });
    const QByteArray address = "http://127.0.0.1:" + QByteArray::number(proxy.port());
    for (const char *variable : {"http_proxy", "HTTP_PROXY", "all_proxy"})
        qputenv(variable, address);
    // The proxy that every socket uses unless configured otherwise.
    QNetworkProxy::setApplicationProxy(
        QNetworkProxy(QNetworkProxy::HttpProxy, QStringLiteral("127.0.0.1"), proxy.port()));
    const auto result = rpcResult(server.port());
    QNetworkProxy::setApplicationProxy(QNetworkProxy::NoProxy);
    QVERIFY(result);
    for (const char *variable : {"http_proxy", "HTTP_PROXY", "all_proxy"})
        qunsetenv(variable);
    QCOMPARE(server.connections(), 1);
    QCOMPARE(proxy.connections(), 0);
}

void TestNodeRPCAnswers::callsMayOverlap()
{
    QList<QTcpSocket *> waiting;
    RawServer server([&](QTcpSocket *connection) { waiting += connection; });
    NodeRPC rpc(server.port());
    const RpcCall first(rpc, QStringLiteral("server_info"));
    const RpcCall second(rpc, QStringLiteral("stop"));
    QTRY_COMPARE(waiting.size(), 2);
    waiting[1]->write(RawServer::http("{\"result\":{}}"));
    waiting[0]->write(RawServer::http("{\"result\":[]}"));
    QTRY_VERIFY(first.finished() && second.finished());
    QVERIFY(first.result().has_value() != second.result().has_value());
}

void TestNodeRPCAnswers::survivesDisconnects()
{
    auto server = std::make_unique<RawServer>([](QTcpSocket *c) {
        c->write(RawServer::http("{\"result\":{}}"));
        c->disconnectFromHost(); // although the response promised to keep the connection open
    });
    NodeRPC rpc(server->port());
    for (int i = 0; i < 5; ++i) {
        const RpcCall call(rpc, QStringLiteral("server_info"));
        QTRY_VERIFY(call.finished());
        QVERIFY(call.result());
    }
    server.reset();
    const RpcCall call(rpc, QStringLiteral("server_info"));
    QTRY_VERIFY(call.finished());
    QVERIFY(!call.result());
}

void TestNodeRPCAnswers::destroyedDuringACall()
{
    RawServer server([](QTcpSocket *) {});
    auto rpc = std::make_unique<NodeRPC>(server.port());
    const RpcCall waiting(*rpc, QStringLiteral("server_info"));
    QTRY_COMPARE(server.requests().size(), 1);
    const RpcCall fresh(*rpc, QStringLiteral("stop"));
    QVERIFY(!waiting.finished());
    rpc.reset();
    QVERIFY(waiting.finished() && !waiting.result());
    QVERIFY(fresh.finished() && !fresh.result());
}

TIDEWICK_LOOPBACK_TEST_MAIN(TestNodeRPCAnswers)
#include "tst_noderpc_answers.moc"
