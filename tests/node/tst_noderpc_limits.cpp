// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "node/NodeRPC.h"
#include "support/PeakMemory.h"
#include "support/RawServer.h"
#include "support/RpcCall.h"
#include "support/Surroundings.h"

#include <QTcpSocket>
#include <QTimer>

#include <algorithm>
#include <array>

using namespace tidewick;
using namespace std::chrono_literals;

namespace {

/// Writes the block repeatedly, as fast as it is accepted, until this many bytes have been written.
/// Stops when the connection is gone.
void pour(QTcpSocket *connection, const QByteArray &block, qint64 bytes)
{
    const auto left = std::make_shared<qint64>(bytes);
    const auto more = [connection, block, left] {
        while (*left > 0 && connection->bytesToWrite() < 1'000'000)
            *left -= connection->write(block);
    };
    QObject::connect(connection, &QTcpSocket::bytesWritten, connection, more);
    more();
}

/// Writes one byte, and another each time the period has passed.
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

/// Tests how long a call may take and how large its answer may be.
class TestNodeRPCLimits : public QObject
{
    Q_OBJECT

private slots:
    void refusedConnectionFailsAtOnce();
    void limits_data();
    void limits();
    void largestAnswer();
    void tooLarge_data();
    void tooLarge();
};

void TestNodeRPCLimits::refusedConnectionFailsAtOnce()
{
    quint16 port = 0;
    {
        const RawServer server([](QTcpSocket *) {});
        port = server.port();
    }
    NodeRPC rpc(port);
    { // the first call sets up the session
        const RpcCall warm(rpc, QStringLiteral("x"));
        QTRY_VERIFY(warm.finished());
    }
    std::array<std::chrono::milliseconds, 5> times{};
    for (auto &time : times) {
        const RpcCall call(rpc, QStringLiteral("x"));
        QTRY_VERIFY(call.finished());
        QVERIFY(!call.result());
        time = call.elapsed();
    }
    auto *const median = times.begin() + times.size() / 2;
    std::nth_element(times.begin(), median, times.end());
    QVERIFY2(*median < 100ms, qPrintable(QString::number(median->count())));
}

void TestNodeRPCLimits::limits_data()
{
    QTest::addColumn<RawServer::Answer>("answer");
    QTest::addColumn<std::chrono::milliseconds>("atLeast");
    QTest::addColumn<std::chrono::milliseconds>("atMost");
    const QByteArray whole = RawServer::http("{\"result\":{}}" + QByteArray(100, ' '));
    const QByteArray headers = whole.left(whole.indexOf("\r\n\r\n") + 4);
    const QByteArray body = whole.mid(headers.size());
    const auto row = [](const char *name, const RawServer::Answer &answer,
                        std::chrono::milliseconds atLeast, std::chrono::milliseconds atMost) {
        QTest::newRow(name) << answer << atLeast << atMost;
    };

    row(
        "no answer", [](QTcpSocket *) {}, 2990ms, 4500ms);
    row(
        "the headers byte by byte", [=](QTcpSocket *c) { drip(c, whole, 500ms); }, 2990ms, 6500ms);
    row(
        "the body byte by byte",
        [=](QTcpSocket *c) {
            c->write(headers);
            drip(c, body, 500ms);
        },
        4990ms, 6500ms);
    row(
        "stops in the middle", [=](QTcpSocket *c) { c->write(headers + body.left(5)); }, 2990ms,
        4500ms);
}

/// The upper bound is a timer alongside those of the call: even if the whole program is delayed,
/// the timer that is due first fires first.
void TestNodeRPCLimits::limits()
{
    QFETCH(RawServer::Answer, answer);
    QFETCH(std::chrono::milliseconds, atLeast);
    QFETCH(std::chrono::milliseconds, atMost);
    RawServer server(answer);
    NodeRPC rpc(server.port());
    const RpcCall call(rpc, QStringLiteral("server_info"));
    bool late = false;
    QTimer bound;
    bound.setSingleShot(true);
    bound.setTimerType(Qt::PreciseTimer);
    connect(&bound, &QTimer::timeout, this, [&] { late = !call.finished(); });
    bound.start(atMost);
    QTRY_VERIFY_WITH_TIMEOUT(call.finished() || late, 60'000);
    QVERIFY(!late);
    QVERIFY(!call.result());
    QVERIFY2(call.elapsed() >= atLeast, qPrintable(QString::number(call.elapsed().count())));
}

void TestNodeRPCLimits::largestAnswer()
{
    const QByteArray begin = "{\"result\":{}";
    const QByteArray body =
        begin + QByteArray(NodeRPC::largestAnswer - begin.size() - 1, ' ') + '}';
    RawServer server([&](QTcpSocket *connection) { connection->write(RawServer::http(body)); });
    QVERIFY(rpcResult(server.port()));
    const QByteArray more = begin + ' ' + body.mid(begin.size());
    RawServer moreServer([&](QTcpSocket *connection) {
        connection->write("HTTP/1.0 200 OK\r\n\r\n" + more);
        connection->disconnectFromHost();
    });
    QVERIFY(!rpcResult(moreServer.port()));
}

void TestNodeRPCLimits::tooLarge_data()
{
    QTest::addColumn<QByteArray>("begin");
    QTest::addColumn<QByteArray>("repeated");
    QTest::addColumn<qint64>("mostMemory");
    const auto row = [](const char *name, const QByteArray &begin, const QByteArray &repeated = "x",
                        qint64 mostMemory = qint64{4} * 1024 * 1024) {
        QTest::newRow(name) << begin << repeated << mostMemory;
    };
    const QByteArray chunked = "HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\n\r\n";

    row("announced", "HTTP/1.1 200 OK\r\nContent-Length: 200000000\r\n\r\n");
    row("not announced", "HTTP/1.0 200 OK\r\n\r\n", "x", 4 * NodeRPC::largestAnswer);
    row("not HTTP", "");
    row("status line", "HTTP/1.1 200 ");
    row("one header", "HTTP/1.1 200 OK\r\nX: ");
    row("many headers", "HTTP/1.1 200 OK\r\n", "X: y\r\n");
    row("folded header", "HTTP/1.1 200 OK\r\nX: y\r\n", " y\r\n");
    row("interim answers", "", "HTTP/1.1 100 Continue\r\n\r\n");
    row("chunk size", chunked);
    row("zeros in the chunk size", chunked, "0");
    row("large chunk", chunked + "BEBC200\r\n");
    row("small chunks", chunked, "1\r\nx\r\n", 4 * NodeRPC::largestAnswer);
    row("chunk extension", chunked + "1;");
    row("trailers", chunked + "0\r\n", "X: y\r\n");
}

/// An oversized answer is discarded as it arrives: memory use stays far below the amount sent, and
/// the connection closes while the caller still exists.
void TestNodeRPCLimits::tooLarge()
{
    QFETCH(QByteArray, begin);
    QFETCH(QByteArray, repeated);
    QFETCH(qint64, mostMemory);
    RawServer server([&](QTcpSocket *connection) {
        connection->write(begin);
        pour(connection, repeated.repeated(100'000 / repeated.size()), 200'000'000);
    });
    QSignalSpy disconnected(&server, &RawServer::disconnected);
    const PeakMemory memory;
    NodeRPC rpc(server.port());
    const RpcCall call(rpc, QStringLiteral("server_info"));
    QTRY_VERIFY_WITH_TIMEOUT(call.finished(), 60'000);
    QVERIFY(!call.result());
    QTRY_VERIFY_WITH_TIMEOUT(disconnected.count() > 0, 60'000);
    QVERIFY(memory.isBelow(mostMemory));
    QVERIFY(server.sent() < 200'000'000);
}

TIDEWICK_LOOPBACK_TEST_MAIN(TestNodeRPCLimits)
#include "tst_noderpc_limits.moc"
