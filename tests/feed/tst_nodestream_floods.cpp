// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "StreamClient.h"
#include "support/PeakMemory.h"
#include "support/RawWebSocketServer.h"
#include "support/Surroundings.h"

using namespace tidewick;

namespace {

using Server = RawWebSocketServer;

constexpr qint64 MiB = 1024LL * 1024;

/// Sends the bytes up to this many times, as fast as the other side accepts them.
void pour(QTcpSocket *connection, const QByteArray &bytes, int times)
{
    const auto left = std::make_shared<int>(times);
    const auto more = [connection, bytes, left] {
        while (*left > 0 && connection->bytesToWrite() < MiB) {
            --*left;
            connection->write(bytes);
        }
    };
    QObject::connect(connection, &QTcpSocket::bytesWritten, connection, more);
    more();
}

} // namespace

/// Checks that nothing accumulates when a server sends without end.
class TestNodeStreamFloods : public QObject
{
    Q_OBJECT

private slots:
    void pings_data();
    void pings();
    void pingsThatAreAnswered();
    void headers_data();
    void headers();
    void largeTexts();
    void pieces();
};

void TestNodeStreamFloods::pings_data()
{
    QTest::addColumn<QByteArray>("payload");
    QTest::newRow("large") << QByteArray(125, 'p');
    QTest::newRow("empty") << QByteArray();
}

/// The server does not read the replies.
void TestNodeStreamFloods::pings()
{
    QFETCH(QByteArray, payload);
    Server server;
    const StreamClient client;
    QTRY_VERIFY(server.isOpen());
    const QByteArray ping = Server::frame(Server::ping, payload);
    const QByteArray pings = ping.repeated(100'000 / ping.size());
    const PeakMemory memory;
    server.stopReading();
    pour(server.connection(), pings, 2000);
    QTRY_COMPARE_WITH_TIMEOUT(client.failures(), 1, 60'000);
    QVERIFY(memory.isBelow(80 * MiB));
}

/// Any number of pings is fine as long as the replies are read.
void TestNodeStreamFloods::pingsThatAreAnswered()
{
    const Server server;
    const StreamClient client;
    QTRY_VERIFY(server.isOpen());
    for (qsizetype i = 0; i < 10; ++i) {
        server.send(Server::frame(Server::ping, "p").repeated(1000));
        QTRY_COMPARE(server.frames().size(), 1000 * (i + 1));
    }
    QCOMPARE(client.failures(), 0);
}

void TestNodeStreamFloods::headers_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::newRow("one line") << QByteArray(100'000, 'x');
    QTest::newRow("many lines") << QByteArray("X: " + QByteArray(95, 'x') + "\r\n").repeated(1000);
}

void TestNodeStreamFloods::headers()
{
    QFETCH(QByteArray, bytes);
    const Server server([&](QTcpSocket *connection) {
        connection->write("HTTP/1.1 101 Switching Protocols\r\n");
        pour(connection, bytes, 5000);
    });
    const PeakMemory memory;
    const StreamClient client;
    QTRY_COMPARE_WITH_TIMEOUT(client.failures(), 1, 30'000);
    QVERIFY(memory.isBelow(40 * MiB));
}

void TestNodeStreamFloods::largeTexts()
{
    const Server server;
    NodeStream stream;
    qint64 sum = 0;
    int failures = 0;
    connect(&stream, &StreamSocket::received, this,
            [&](const QString &text) { sum += text.size(); });
    connect(&stream, &StreamSocket::failed, this, [&] { ++failures; });
    QTRY_VERIFY(server.isOpen());
    const QByteArray text = Server::frame(Server::text, QByteArray(16 * MiB, 'x'));
    const PeakMemory memory;
    for (qint64 i = 1; i <= 20; ++i) {
        server.send(text);
        QTRY_COMPARE_WITH_TIMEOUT(sum, i * 16 * MiB, 30'000);
    }
    QCOMPARE(failures, 0);
    QVERIFY(memory.isBelow(200 * MiB));
}

/// A text that does not end, in empty fragments.
void TestNodeStreamFloods::pieces()
{
    const Server server;
    const StreamClient client;
    QTRY_VERIFY(server.isOpen());
    const PeakMemory memory;
    server.send(Server::textBegin, "x");
    const QByteArray pieces = Server::frame(Server::middle, {}).repeated(50'000);
    for (int i = 0; i < 100; ++i) {
        server.send(pieces);
        QTRY_COMPARE(server.connection()->bytesToWrite(), 0);
    }
    server.send(Server::end, "y");
    QTRY_COMPARE_WITH_TIMEOUT(client.texts(), QStringList(QStringLiteral("xy")), 30'000);
    QVERIFY(memory.isBelow(40 * MiB));
}

TIDEWICK_LOOPBACK_TEST_MAIN(TestNodeStreamFloods)
#include "tst_nodestream_floods.moc"
