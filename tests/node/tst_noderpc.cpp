// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "node/NodeRPC.h"
#include "platform/ProcessMemory.h"
#include "support/RawServer.h"
#include "support/Surroundings.h"
#include "support/TestFiles.h"

#include <QElapsedTimer>
#include <QJsonArray>
#include <QJsonDocument>
#include <QTcpSocket>
#include <QTimer>

#include <unistd.h>

using namespace tidewick;
using namespace std::chrono_literals;

using Result = std::optional<QJsonObject>;

namespace {

/// The outcome of one call: none while it is under way.
class Call
{
public:
    Call(NodeRPC &rpc, const QString &method) { run(rpc, method); }

    bool finished() const { return m_finished; }
    const Result &result() const { return m_result; }
    qint64 elapsed() const { return m_elapsed; }

private:
    QCoro::Task<> run(NodeRPC &rpc, QString method)
    {
        QElapsedTimer timer;
        timer.start();
        m_result = co_await rpc.call(method);
        m_elapsed = timer.elapsed();
        m_finished = true;
    }

    bool m_finished = false;
    Result m_result;
    qint64 m_elapsed = 0;
};

/// Longer than any call may take.
constexpr int patience = 9'000;

Result resultOf(quint16 port, const QString &method = QStringLiteral("server_info"))
{
    NodeRPC rpc(port);
    const Call call(rpc, method);
    [&] { QTRY_VERIFY_WITH_TIMEOUT(call.finished(), patience); }();
    return call.result();
}

/// Writes bytes as fast as they are taken, up to a number of them; stops when nobody takes them.
void pour(QTcpSocket *connection, qint64 bytes)
{
    const auto left = std::make_shared<qint64>(bytes);
    const auto more = [connection, left] {
        while (*left > 0 && connection->bytesToWrite() < 1'000'000) {
            const QByteArray block(qMin<qint64>(*left, 100'000), 'x');
            *left -= connection->write(block);
        }
    };
    QObject::connect(connection, &QTcpSocket::bytesWritten, connection, more);
    more();
}

/// Writes one byte, then another each time the period has passed.
void drip(QTcpSocket *connection, const QByteArray &bytes, std::chrono::milliseconds period)
{
    auto *timer = new QTimer(connection);
    const auto at = std::make_shared<qsizetype>(0);
    QObject::connect(timer, &QTimer::timeout, connection, [connection, bytes, at] {
        if (*at < bytes.size())
            connection->write(bytes.mid((*at)++, 1));
    });
    timer->start(period);
}

} // namespace

class TestNodeRPC : public QObject
{
    Q_OBJECT

private slots:
    void sendsTheEnvelope();
    void answers_data();
    void answers();
    void recordedAnswers_data();
    void recordedAnswers();
    void refusedIsToldAtOnce();
    void limits_data();
    void limits();
    void largestAnswer();
    void tooLarge_data();
    void tooLarge();
    void redirectsAreNotFollowed_data();
    void redirectsAreNotFollowed();
    void keepsNothingBetweenCalls();
    void usesNoProxy();
    void callsMayOverlap();
    void survivesAServerThatComesAndGoes();
    void destroyedWhileAsking();
};

void TestNodeRPC::sendsTheEnvelope()
{
    RawServer server([](QTcpSocket *c) { c->write(RawServer::http("{\"result\":{}}")); });
    QVERIFY(resultOf(server.port(), QStringLiteral("get \"counts\" é")));
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

void TestNodeRPC::answers_data()
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
    row("error beside", ok(R"({"error":"x","result":{}})"), QJsonObject());
    row("no result", ok(R"({"status":"success"})"));
    row("array result", ok(R"({"result":[]})"));
    row("text result", ok(R"({"result":"x"})"));
    row("null result", ok(R"({"result":null})"));
    row("array", ok("[]"));
    row("nothing", ok(""));
    row("garbage", ok("\x01\xFF garbage"));
    row("cut JSON", ok(R"({"result":{)"));
    row("deep", ok(R"({"result":)" + QByteArray(5000, '[') + QByteArray(5000, ']') + '}'));
    row("no HTTP", "garbage\r\n\r\n");
    row("chunked",
        "HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\n\r\n"
        "5\r\n{\"res\r\nA\r\nult\":{}}\r\n\r\n0\r\n\r\n",
        QJsonObject());
    row("to the end of the connection", "HTTP/1.0 200 OK\r\n\r\n{\"result\":{}}", QJsonObject());
    row("half the body", "HTTP/1.1 200 OK\r\nContent-Length: 100\r\n\r\n{\"result\":{}}");
    row("cut chunks", "HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\n\r\nD\r\n{\"result\":{}}");
    row("half the headers", "HTTP/1.1 200 OK\r\nContent-Le");
    for (const char *status :
         {"400 Bad Request", "401 Unauthorized", "403 Forbidden", "404 Not Found",
          "405 Method Not Allowed", "409 Conflict", "410 Gone", "418 Teapot", "422 Unprocessable",
          "500 Internal Server Error", "501 Not Implemented", "503 Service Unavailable",
          "599 Other"}) {
        QTest::addRow("%s, JSON", status) << RawServer::http(errorBody, status) << Result(error);
        QTest::addRow("%s, text", status) << RawServer::http("no", status) << Result();
    }
}

void TestNodeRPC::answers()
{
    QFETCH(QByteArray, answer);
    QFETCH(Result, expected);
    RawServer server([&](QTcpSocket *connection) {
        connection->write(answer);
        connection->disconnectFromHost();
    });
    QCOMPARE(resultOf(server.port()), expected);
}

void TestNodeRPC::recordedAnswers_data()
{
    QTest::addColumn<QByteArray>("file");
    QTest::addColumn<QString>("member");
    QTest::newRow("server_info") << QByteArray("server_info.json") << QStringLiteral("info");
    QTest::newRow("get_counts") << QByteArray("get_counts.json") << QStringLiteral("node_writes");
    QTest::newRow("stop") << QByteArray("stop.json") << QStringLiteral("message");
    QTest::newRow("unknown") << QByteArray("unknown_method.json") << QStringLiteral("error");
    QTest::newRow("not understood") << QByteArray("bad_json.txt") << QString();
}

void TestNodeRPC::recordedAnswers()
{
    QFETCH(QByteArray, file);
    QFETCH(QString, member);
    const QByteArray body = contentOf(TIDEWICK_TEST_DATA "/wire/" + file.toStdString());
    RawServer server([&](QTcpSocket *connection) {
        connection->write(RawServer::http(body, member.isEmpty() ? "400 Bad Request" : "200 OK"));
    });
    const Result result = resultOf(server.port());
    QCOMPARE(result.has_value(), !member.isEmpty());
    if (result)
        QVERIFY(result->contains(member));
}

void TestNodeRPC::refusedIsToldAtOnce()
{
    quint16 port = 0;
    {
        const RawServer server([](QTcpSocket *) {});
        port = server.port();
    }
    NodeRPC rpc(port);
    { // the first call makes the session
        const Call warm(rpc, QStringLiteral("x"));
        QTRY_VERIFY(warm.finished());
    }
    qint64 quickest = patience;
    for (int i = 0; i < 5; ++i) {
        const Call call(rpc, QStringLiteral("x"));
        QTRY_VERIFY(call.finished());
        QVERIFY(!call.result());
        quickest = qMin(quickest, call.elapsed());
    }
    QVERIFY2(quickest < 100, qPrintable(QString::number(quickest)));
}

void TestNodeRPC::limits_data()
{
    QTest::addColumn<RawServer::Answer>("answer");
    QTest::addColumn<int>("atLeast");
    QTest::addColumn<int>("atMost");
    const QByteArray whole = RawServer::http("{\"result\":{}}" + QByteArray(100, ' '));
    const QByteArray headers = whole.left(whole.indexOf("\r\n\r\n") + 4);
    const QByteArray body = whole.mid(headers.size());

    QTest::newRow("no answer") << RawServer::Answer([](QTcpSocket *) {}) << 2'990 << 4'500;
    QTest::newRow("a byte of the headers a second")
        << RawServer::Answer([=](QTcpSocket *c) { drip(c, whole, 1s); }) << 2'990 << 5'500;
    QTest::newRow("a byte of the body a second") << RawServer::Answer([=](QTcpSocket *c) {
        c->write(headers);
        drip(c, body, 1s);
    }) << 4'990 << 6'500;
    QTest::newRow("stops in the middle")
        << RawServer::Answer([=](QTcpSocket *c) { c->write(headers + body.left(5)); }) << 2'990
        << 4'500;
}

void TestNodeRPC::limits()
{
    QFETCH(RawServer::Answer, answer);
    QFETCH(int, atLeast);
    QFETCH(int, atMost);
    RawServer server(answer);
    NodeRPC rpc(server.port());
    const Call call(rpc, QStringLiteral("server_info"));
    QTRY_VERIFY_WITH_TIMEOUT(call.finished(), patience);
    QVERIFY(!call.result());
    QVERIFY2(call.elapsed() >= atLeast && call.elapsed() <= atMost,
             qPrintable(QString::number(call.elapsed())));
}

void TestNodeRPC::largestAnswer()
{
    const QByteArray begin = "{\"result\":{}";
    const QByteArray body =
        begin + QByteArray(NodeRPC::largestAnswer - begin.size() - 1, ' ') + '}';
    RawServer server([&](QTcpSocket *connection) { connection->write(RawServer::http(body)); });
    QVERIFY(resultOf(server.port()));
    const QByteArray more = begin + ' ' + body.mid(begin.size());
    RawServer moreServer([&](QTcpSocket *connection) {
        connection->write("HTTP/1.0 200 OK\r\n\r\n" + more);
        connection->disconnectFromHost();
    });
    QVERIFY(!resultOf(moreServer.port()));
}

void TestNodeRPC::tooLarge_data()
{
    QTest::addColumn<QByteArray>("headers");
    QTest::newRow("announced") << QByteArray(
        "HTTP/1.1 200 OK\r\nContent-Length: 200000000\r\n\r\n");
    QTest::newRow("not announced") << QByteArray("HTTP/1.0 200 OK\r\n\r\n");
    QTest::newRow("one header") << QByteArray("HTTP/1.1 200 OK\r\nX: ");
    QTest::newRow("status line") << QByteArray("HTTP/1.1 200 ");
    QTest::newRow("chunk size") << QByteArray(
        "HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\n\r\n");
}

namespace {

/// Begins a new count of the largest footprint of this process.
qint64 resetPeak()
{
    writeFile("/proc/self/clear_refs", "5");
    return ProcessMemory::of(::getpid())->footprint;
}

} // namespace

/// What is too large is let go of as it comes: memory stays far below what was sent.
void TestNodeRPC::tooLarge()
{
    QFETCH(QByteArray, headers);
    const qint64 before = resetPeak();
    RawServer server([&](QTcpSocket *connection) {
        connection->write(headers);
        pour(connection, 200'000'000);
    });
    QSignalSpy disconnected(&server, &RawServer::disconnected);
    QVERIFY(!resultOf(server.port()));
    QTRY_VERIFY(disconnected.count() > 0);
    const qint64 grown = ProcessMemory::of(::getpid())->peakFootprint - before;
    QVERIFY2(grown < 4 * NodeRPC::largestAnswer, qPrintable(QString::number(grown)));
    QVERIFY(server.sent() < 200'000'000);
}

void TestNodeRPC::redirectsAreNotFollowed_data()
{
    QTest::addColumn<QByteArray>("status");
    for (const char *status :
         {"301 Moved", "302 Found", "303 See Other", "307 Temporary", "308 Permanent"})
        QTest::newRow(status) << QByteArray(status);
}

void TestNodeRPC::redirectsAreNotFollowed()
{
    QFETCH(QByteArray, status);
    RawServer target([](QTcpSocket *c) { c->write(RawServer::http("{\"result\":{}}")); });
    const QByteArray location =
        "Location: http://127.0.0.1:" + QByteArray::number(target.port()) + "/\r\n";
    RawServer server(
        [&](QTcpSocket *c) { c->write(RawServer::http("see there", status, location)); });
    QVERIFY(!resultOf(server.port()));
    QCOMPARE(target.connections(), 0);
}

void TestNodeRPC::keepsNothingBetweenCalls()
{
    RawServer server([](QTcpSocket *c) {
        c->write(RawServer::http("{\"result\":{}}", "200 OK",
                                 "Set-Cookie: a=b\r\nCache-Control: max-age=1000\r\n"
                                 "ETag: \"x\"\r\n"));
    });
    NodeRPC rpc(server.port());
    for (int i = 0; i < 3; ++i) {
        const Call call(rpc, QStringLiteral("server_info"));
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

void TestNodeRPC::usesNoProxy()
{
    RawServer proxy([](QTcpSocket *c) { c->write(RawServer::http("{\"result\":{}}")); });
    RawServer server([](QTcpSocket *c) { c->write(RawServer::http("{\"result\":{}}")); });
    const QByteArray address = "http://127.0.0.1:" + QByteArray::number(proxy.port());
    for (const char *variable : {"http_proxy", "HTTP_PROXY", "all_proxy"})
        qputenv(variable, address);
    QVERIFY(resultOf(server.port()));
    for (const char *variable : {"http_proxy", "HTTP_PROXY", "all_proxy"})
        qunsetenv(variable);
    QCOMPARE(server.connections(), 1);
    QCOMPARE(proxy.connections(), 0);
}

void TestNodeRPC::callsMayOverlap()
{
    QList<QTcpSocket *> waiting;
    RawServer server([&](QTcpSocket *connection) { waiting += connection; });
    NodeRPC rpc(server.port());
    const Call first(rpc, QStringLiteral("server_info"));
    const Call second(rpc, QStringLiteral("stop"));
    QTRY_COMPARE(waiting.size(), 2);
    waiting[1]->write(RawServer::http("{\"result\":{}}"));
    waiting[0]->write(RawServer::http("{\"result\":[]}"));
    QTRY_VERIFY(first.finished() && second.finished());
    QVERIFY(first.result().has_value() != second.result().has_value());
}

void TestNodeRPC::survivesAServerThatComesAndGoes()
{
    auto server = std::make_unique<RawServer>([](QTcpSocket *c) {
        c->write(RawServer::http("{\"result\":{}}"));
        c->disconnectFromHost(); // though the answer promised to stay
    });
    NodeRPC rpc(server->port());
    for (int i = 0; i < 5; ++i) {
        const Call call(rpc, QStringLiteral("server_info"));
        QTRY_VERIFY(call.finished());
        QVERIFY(call.result());
    }
    server.reset();
    const Call call(rpc, QStringLiteral("server_info"));
    QTRY_VERIFY(call.finished());
    QVERIFY(!call.result());
}

void TestNodeRPC::destroyedWhileAsking()
{
    RawServer server([](QTcpSocket *) {});
    auto rpc = std::make_unique<NodeRPC>(server.port());
    const Call waiting(*rpc, QStringLiteral("server_info"));
    QTRY_COMPARE(server.requests().size(), 1);
    const Call fresh(*rpc, QStringLiteral("stop"));
    QVERIFY(!waiting.finished());
    rpc.reset();
    QVERIFY(waiting.finished() && !waiting.result());
    QVERIFY(fresh.finished() && !fresh.result());
}

TIDEWICK_TEST_MAIN(TestNodeRPC)
#include "tst_noderpc.moc"
