// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "StreamClient.h"
#include "support/NoDescriptorsLeft.h"
#include "support/RawWebSocketServer.h"
#include "support/Surroundings.h"

#include <QElapsedTimer>
#include <QNetworkProxy>

#include <filesystem>

using namespace tidewick;
using namespace std::chrono_literals;

namespace {

using Server = RawWebSocketServer;

/// Long enough, in ms, for an unexpected extra message or signal to show up.
constexpr int aMoment = 30;

long openDescriptors()
{
    return std::distance(std::filesystem::directory_iterator("/proc/self/fd"), {});
}

} // namespace

/// Tests how a connection begins and ends.
class TestNodeStream : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void cleanup();
    void completesTheHandshake();
    void usesNoProxy();
    void sendsInOrder();
    void refused();
    void noDescriptorsLeft();
    void handshakeLimit_data();
    void handshakeLimit();
    void noLimitAfterTheHandshake();
    void badHandshakes_data();
    void badHandshakes();
    void endings_data();
    void endings();
    void goesAway();
    void goesAwayAfterManyMessages();
    void goesAwayDuringTheHandshake();
    void goesAwayBeforeConnecting();
    void isSilentAfterGoingAway();
    void destroyed_data();
    void destroyed();
    void destroyedInASlot();

private:
    long m_descriptors = 0;
};

/// Descriptors that Qt opens on first use stay open.
void TestNodeStream::initTestCase()
{
    {
        const Server server;
        const StreamClient client;
        QTRY_VERIFY(server.isOpen());
    }
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    m_descriptors = openDescriptors();
}

void TestNodeStream::cleanup()
{
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    QTRY_COMPARE(openDescriptors(), m_descriptors);
}

void TestNodeStream::completesTheHandshake()
{
    const Server server;
    const StreamClient client;
    QTRY_VERIFY(server.isOpen());
    QVERIFY(server.request().startsWith("GET / HTTP/1.1\r\n"));
    QVERIFY(server.request().contains("\r\nHost: 127.0.0.1:16006\r\n"));
    QVERIFY(!server.request().contains("Sec-WebSocket-Extensions"));
    QTest::qWait(aMoment);
    QVERIFY(server.frames().isEmpty());
    QVERIFY(client.texts().isEmpty());
    QCOMPARE(client.failures(), 0);
}

void TestNodeStream::usesNoProxy()
{
    const Server server;
    QNetworkProxy::setApplicationProxy(
        QNetworkProxy(QNetworkProxy::HttpProxy, QStringLiteral("127.0.0.1"), 1));
    const StreamClient client;
    const bool open = QTest::qWaitFor([&] { return server.isOpen(); });
    QNetworkProxy::setApplicationProxy(QNetworkProxy(QNetworkProxy::NoProxy));
    QVERIFY(open);
}

void TestNodeStream::sendsInOrder()
{
    const Server server;
    StreamClient client;
    QList<Server::Frame> expected;
    for (int i = 0; i < 60; ++i) {
        client.stream().send(QString::number(i));
        expected.append({Server::text, QByteArray::number(i)});
    }
    QTRY_COMPARE(server.frames(), expected);
    client.stream().send(QStringLiteral("\u20ac"));
    expected.append({Server::text, "\xe2\x82\xac"});
    QTRY_COMPARE(server.frames(), expected);
}

void TestNodeStream::refused()
{
    const StreamClient client;
    QCOMPARE(client.failures(), 0);
    QTRY_COMPARE(client.failures(), 1);
    QTest::qWait(aMoment);
    QCOMPARE(client.failures(), 1);
}

void TestNodeStream::noDescriptorsLeft()
{
    const Server server;
    {
        const NoDescriptorsLeft none;
        const StreamClient client;
        QCOMPARE(client.failures(), 0);
        QTRY_COMPARE(client.failures(), 1);
    }
    const StreamClient client;
    QTRY_VERIFY(server.isOpen());
}

void TestNodeStream::handshakeLimit_data()
{
    QTest::addColumn<QByteArray>("answer");
    QTest::newRow("nothing") << QByteArray();
    QTest::newRow("half an answer") << QByteArray("HTTP/1.1 101 Switching Protocols\r\nUpgr");
}

void TestNodeStream::handshakeLimit()
{
    QFETCH(QByteArray, answer);
    const Server server([&](QTcpSocket *connection) { connection->write(answer); });
    QElapsedTimer timer;
    timer.start();
    StreamClient client(250ms);
    QTRY_COMPARE(client.failures(), 1);
    QVERIFY(timer.elapsed() >= 230); // the timer is coarse
    QCOMPARE(server.connections(), 1);
    client.destroy();
    QTRY_VERIFY(!server.connection());
    QVERIFY(server.unread().isEmpty());
}

void TestNodeStream::noLimitAfterTheHandshake()
{
    const Server server;
    const StreamClient client(1s);
    QTRY_VERIFY(server.isOpen());
    QTest::qWait(1250);
    QCOMPARE(client.failures(), 0);
    server.send(Server::text, "still here");
    QTRY_COMPARE(client.texts().size(), 1);
}

void TestNodeStream::badHandshakes_data()
{
    QTest::addColumn<QByteArray>("answer");
    const QByteArray upgrade = "HTTP/1.1 101 Switching Protocols\r\n";
    const QByteArray headers = "Upgrade: websocket\r\nConnection: Upgrade\r\n";
    const QByteArray accepted = "Sec-WebSocket-Accept: AAAAAAAAAAAAAAAAAAAAAAAAAAA=\r\n";
    QTest::newRow("closed at once") << QByteArray();
    QTest::newRow("403") << QByteArray("HTTP/1.1 403 Forbidden\r\nContent-Length: 2\r\n\r\nno");
    QTest::newRow("200") << QByteArray("HTTP/1.1 200 OK\r\nContent-Length: 2\r\n\r\n{}");
    QTest::newRow("redirected") << QByteArray(
        "HTTP/1.1 302 Found\r\nLocation: ws://127.0.0.1:16006/\r\nContent-Length: 0\r\n\r\n");
    QTest::newRow("not HTTP") << QByteArray("SSH-2.0-x\r\n\r\n");
    QTest::newRow("bytes") << QByteArray("\0\xff\r\n\x81\r\n\r\n", 9);
    QTest::newRow("no headers") << upgrade + "\r\n";
    QTest::newRow("not accepted") << upgrade + headers + "\r\n";
    QTest::newRow("accepted for another key") << upgrade + headers + accepted + "\r\n";
    QTest::newRow("cut") << upgrade + headers;
}

void TestNodeStream::badHandshakes()
{
    QFETCH(QByteArray, answer);
    const Server server([&](QTcpSocket *connection) {
        connection->write(answer + Server::frame(Server::text, "too early"));
        connection->disconnectFromHost();
    });
    const StreamClient client;
    QTRY_COMPARE(client.failures(), 1);
    QTest::qWait(aMoment);
    QCOMPARE(client.failures(), 1);
    QVERIFY(client.texts().isEmpty());
    QCOMPARE(server.connections(), 1);
}

void TestNodeStream::endings_data()
{
    using End = std::function<void(const Server &)>;
    QTest::addColumn<End>("end");
    for (const int code : {1000, 1001, 1002, 1003, 1007, 1008, 1009, 1010, 1011, 3000, 4999})
        QTest::addRow("code %d", code) << End([code](const Server &server) {
            server.send(Server::close, Server::closing(quint16(code), "<b>because</b>"));
        });
    for (const int code : {0, 999, 1004, 1005, 1006, 1015, 65535})
        QTest::addRow("code %d, which must not be sent", code) << End([code](const Server &server) {
            server.send(Server::close, Server::closing(quint16(code)));
        });
    QTest::newRow("no code") << End([](const Server &server) { server.send(Server::close, {}); });
    QTest::newRow("half a code") << End(
        [](const Server &server) { server.send(Server::close, "\x03"); });
    QTest::newRow("reason not UTF-8") << End(
        [](const Server &server) { server.send(Server::close, Server::closing(1000, "\xff")); });
    QTest::newRow("closed without a close frame")
        << End([](const Server &server) { server.connection()->disconnectFromHost(); });
    QTest::newRow("reset") << End([](const Server &server) { server.connection()->abort(); });
    QTest::newRow("within a frame") << End([](const Server &server) {
        server.send(Server::frame(Server::text, QByteArray(1000, 'x')).first(500));
        server.connection()->disconnectFromHost();
    });
    QTest::newRow("within the head of a frame") << End([](const Server &server) {
        server.send(QByteArray("\x81\x7e\x00", 3));
        server.connection()->disconnectFromHost();
    });
    QTest::newRow("between fragments") << End([](const Server &server) {
        server.send(Server::textBegin, "x");
        server.connection()->disconnectFromHost();
    });
}

void TestNodeStream::endings()
{
    using End = std::function<void(const Server &)>;
    QFETCH(End, end);
    const Server server;
    StreamClient client;
    QTRY_VERIFY(server.isOpen());
    server.send(Server::text, "the last words");
    QTRY_COMPARE(client.texts().size(), 1);
    end(server);
    QTRY_COMPARE(client.failures(), 1);
    QCOMPARE(client.texts().size(), 1);
    client.stream().send(QStringLiteral("anybody?"));
    QTest::qWait(aMoment);
    QCOMPARE(client.failures(), 1);
}

void TestNodeStream::goesAway()
{
    const Server server;
    StreamClient client;
    client.stream().send(QStringLiteral("hello"));
    QTRY_COMPARE(server.frames().size(), 1);
    client.stream().goAway();
    client.destroy();
    QTRY_VERIFY(!server.connection());
    const QList<Server::Frame> expected{{Server::text, "hello"},
                                        {Server::close, Server::closing(1001)}};
    QCOMPARE(server.frames(), expected);
    QVERIFY(server.unread().isEmpty());
    QCOMPARE(client.failures(), 0);
}

/// Everything sent before goes out before the close frame.
void TestNodeStream::goesAwayAfterManyMessages()
{
    const Server server;
    StreamClient client;
    QTRY_VERIFY(server.isOpen());
    for (int i = 0; i < 59; ++i)
        client.stream().send(QString(80, u'x'));
    client.stream().goAway();
    client.destroy();
    QTRY_VERIFY(!server.connection());
    QCOMPARE(server.frames().size(), 60);
    QCOMPARE(server.frames().last().payload, Server::closing(1001));
}

void TestNodeStream::goesAwayDuringTheHandshake()
{
    const Server server([](QTcpSocket *) {});
    StreamClient client;
    client.stream().send(QStringLiteral("hello"));
    QTRY_VERIFY(!server.request().isEmpty());
    client.stream().goAway();
    client.destroy();
    QTRY_VERIFY(!server.connection());
    QVERIFY(server.frames().isEmpty());
    QVERIFY(server.unread().isEmpty());
    QCOMPARE(client.failures(), 0);
}

void TestNodeStream::goesAwayBeforeConnecting()
{
    const Server server;
    StreamClient client;
    client.stream().send(QStringLiteral("hello"));
    client.stream().goAway();
    QTest::qWait(aMoment);
    QCOMPARE(server.connections(), 0);
    QCOMPARE(client.failures(), 0);
}

void TestNodeStream::isSilentAfterGoingAway()
{
    const Server server;
    StreamClient client;
    QTRY_VERIFY(server.isOpen());
    server.send(Server::text, "one");
    QTRY_COMPARE(client.texts().size(), 1);
    client.stream().goAway();
    client.stream().send(QStringLiteral("never"));
    client.stream().goAway();
    server.send(Server::text, "two");
    QTRY_VERIFY(!server.connection());
    QTest::qWait(aMoment);
    QCOMPARE(client.texts().size(), 1);
    QCOMPARE(client.failures(), 0);
    QCOMPARE(server.frames().size(), 1);
}

void TestNodeStream::destroyed_data()
{
    QTest::addColumn<int>("rounds");
    QTest::newRow("at once") << 0;
    for (int rounds = 1; rounds < 12; ++rounds)
        QTest::addRow("after %d rounds of the event loop", rounds) << rounds;
}

/// The server is busy. Whenever the stream is destroyed, it sends no close frame and emits no
/// signal.
void TestNodeStream::destroyed()
{
    QFETCH(int, rounds);
    const Server server;
    StreamClient client;
    client.stream().send(QStringLiteral("hello"));
    for (int i = 0; i < rounds; ++i) {
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents, 20);
        if (server.isOpen())
            server.send(Server::frame(Server::text, "x").repeated(1000));
    }
    client.destroy();
    QTRY_VERIFY(!server.connection());
    QTest::qWait(aMoment);
    QCOMPARE(client.failures(), 0);
    for (const Server::Frame &frame : server.frames())
        QCOMPARE(frame.firstByte, Server::text);
    QVERIFY(server.unread().isEmpty());
}

/// As the feed destroys its stream.
void TestNodeStream::destroyedInASlot()
{
    const Server server;
    auto *stream = new NodeStream;
    int texts = 0;
    connect(stream, &StreamSocket::received, stream, [&] {
        ++texts;
        stream->disconnect();
        stream->goAway();
        stream->deleteLater();
    });
    QTRY_VERIFY(server.isOpen());
    server.send(Server::frame(Server::text, "x").repeated(1000));
    QTRY_VERIFY(!server.connection());
    QCOMPARE(texts, 1);
    QCOMPARE(server.frames(), (QList<Server::Frame>{{Server::close, Server::closing(1001)}}));
}

TIDEWICK_LOOPBACK_TEST_MAIN(TestNodeStream)
#include "tst_nodestream.moc"
