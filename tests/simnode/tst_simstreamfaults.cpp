// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "RawClient.h"
#include "SimulatedNode.h"
#include "platform/json/JsonRead.h"
#include "simnode/WebSocketFrames.h"
#include "support/Surroundings.h"

#include <QElapsedTimer>

using namespace tidewick;
using namespace std::chrono_literals;

namespace {

using Frames = sim::WebSocketFrames;
using State = RawClient::State;

constexpr qsizetype MiB = 1024LL * 1024;

const QByteArray handshake =
    "GET / HTTP/1.1\r\nHost: 127.0.0.1\r\nUpgrade: websocket\r\nConnection: Upgrade\r\n"
    "Sec-WebSocket-Key: AAAAAAAAAAAAAAAAAAAAAA==\r\nSec-WebSocket-Version: 13\r\n\r\n";

/// A client frame with a zero mask; the text has to be shorter than 126 bytes.
QByteArray masked(const QByteArray &text)
{
    return "\x81" + QByteArray(1, char(0x80 | text.size())) + QByteArray(4, '\0') + text;
}

const QByteArray ask = masked(R"({"id":1,"command":"ping"})");

bool nothingElse(const QByteArray &)
{
    return false;
}

/// A node with this stream fault on its second connection.
class Node : public SimulatedNode
{
public:
    explicit Node(const QByteArray &scenario)
    {
        start("start-delay=0 stop-delay=0 state=full txns=50-50 speed=20 stream=ok+" + scenario);
        // waitUntilOpen() makes the first connection.
        if (!waitUntilOpen())
            qFatal("The node did not open its port");
    }
};

/// A connection that has requested the handshake.
class Connection : public RawClient
{
public:
    explicit Connection(const Node &node) : RawClient(node.streamPort()) { send(handshake); }

    /// Reads what follows the answer to the handshake until there are this many bytes.
    QByteArray readFrames(qsizetype size)
    {
        m_bytes += read([&](const QByteArray &more) { return framesIn(m_bytes + more) >= size; });
        return m_bytes.mid(m_bytes.indexOf("\r\n\r\n") + 4);
    }

private:
    static qsizetype framesIn(const QByteArray &bytes)
    {
        const qsizetype head = bytes.indexOf("\r\n\r\n");
        return head < 0 ? -1 : bytes.size() - head - 4;
    }

    QByteArray m_bytes;
};

} // namespace

class TestSimStreamFaults : public QObject
{
    Q_OBJECT

private slots:
    void replacesTheHandshake_data();
    void replacesTheHandshake();
    void isSilent();
    void sends_data();
    void sends();
    void ends_data();
    void ends();
    void answersInPieces();
    void answersInBinary();
    void isMute();
    void floods();
    void faultsInSequence();
    void beginsLater();
    void endsInTime();
};

void TestSimStreamFaults::replacesTheHandshake_data()
{
    QTest::addColumn<QByteArray>("begin");
    QTest::newRow("403") << QByteArray("HTTP/1.1 403 Forbidden\r\n");
    QTest::newRow("hang-up") << QByteArray();
    QTest::newRow("not-http") << QByteArray(1, char(0x3c));
}

void TestSimStreamFaults::replacesTheHandshake()
{
    QFETCH(QByteArray, begin);
    const Node node(QTest::currentDataTag());
    Connection client(node);
    const QByteArray answer =
        client.read([&](const QByteArray &bytes) { return bytes.size() > begin.size(); });
    QVERIFY(answer.startsWith(begin));
    QCOMPARE(answer.isEmpty(), begin.isEmpty());
}

void TestSimStreamFaults::isSilent()
{
    const Node node("silent");
    Connection client(node);
    QCOMPARE(client.read(nothingElse, 300ms), QByteArray());
    QCOMPARE(client.state(), State::Open);
}

void TestSimStreamFaults::sends_data()
{
    QTest::addColumn<QByteArray>("begin");
    QTest::addColumn<qsizetype>("size");
    const auto row = [](const char *name, const QByteArray &begin, qsizetype size) {
        QTest::newRow(name) << begin << size;
    };
    row("close-1001", QByteArray("\x88\x02\x03\xe9", 4), 4);
    row("close-0", QByteArray("\x88\x02\x00\x00", 4), 4);
    row("half", QByteArray("\x81\x7e\x03\xe8 ", 5), 500);
    row("garbage", QByteArray(1, char(0x3c)), 100'000);
    row("not-utf8", "\x81\x02\xc0\xff", 4);
    row("large", QByteArray("\x81\x7f\0\0\0\0\x01\x10\0\0 ", 11), 17 * MiB + 10);
    row("endless", QByteArray("\x01\x01[\x00\x7f\0\0\0\0\0\x01\0\0 ", 14), 32 * MiB);
    row("pings", "\x89\x64pppp", 32 * MiB);
    row("unread-pings", "\x89\x64pppp", 32 * MiB);
}

void TestSimStreamFaults::sends()
{
    QFETCH(QByteArray, begin);
    QFETCH(qsizetype, size);
    const Node node(QTest::currentDataTag());
    Connection client(node);
    const QByteArray frames = client.readFrames(size);
    QCOMPARE(frames.first(begin.size()), begin);
    QVERIFY(frames.size() >= size);
    QVERIFY(node.debugLog().contains(QByteArray("stream fault ") + QTest::currentDataTag()
                                     + " begins"));
}

void TestSimStreamFaults::ends_data()
{
    QTest::addColumn<State>("state");
    QTest::newRow("drop") << State::Closed;
    QTest::newRow("reset") << State::Reset;
}

void TestSimStreamFaults::ends()
{
    QFETCH(State, state);
    Node node(QTest::currentDataTag());
    Connection client(node);
    client.readAway();
    QCOMPARE(client.state(), state);
    QVERIFY(node.waitForLog(QByteArray("stream fault ") + QTest::currentDataTag() + " is over"));
}

void TestSimStreamFaults::answersInPieces()
{
    Node node("pieces stream-after=0.1");
    Connection client(node);
    QVERIFY(node.waitForLog("stream fault pieces begins"));
    client.send(ask);
    const QByteArray frames = client.readFrames(100);
    QVERIFY(frames.startsWith(Frames::frame(Frames::textBegin, "{")
                              + Frames::frame(Frames::middle, "\"")));
}

void TestSimStreamFaults::answersInBinary()
{
    Node node("binary");
    Connection client(node);
    QVERIFY(node.waitForLog("stream fault binary begins"));
    client.send(ask);
    QCOMPARE(client.readFrames(100).at(0), char(Frames::binary));
}

void TestSimStreamFaults::isMute()
{
    Node node("mute");
    Connection client(node);
    QVERIFY(node.waitForLog("stream fault mute begins"));
    client.readFrames(0);
    client.send(ask);
    QVERIFY(node.waitForLog("RPCHandler:NFO ping"));
    QCOMPARE(client.read(nothingElse, 300ms), QByteArray());
    QCOMPARE(client.state(), State::Open);
}

void TestSimStreamFaults::floods()
{
    Node node("flood");
    Connection client(node);
    const QByteArray frames = client.readFrames(16 * MiB);
    QCOMPARE(frames.at(0), char(Frames::text));
    const qsizetype size = (quint8(frames.at(2)) << 8) | quint8(frames.at(3));
    const auto message = JsonRead::parseObject(frames.mid(4, size));
    QVERIFY(message);
    QCOMPARE((*message)[u"type"].toString(), QStringLiteral("transaction"));
    QCOMPARE(frames.at(4 + size), char(Frames::text));
}

void TestSimStreamFaults::faultsInSequence()
{
    const Node node("drop+close-4000+ok");
    Connection dropped(node);
    QCOMPARE(dropped.readFrames(1), QByteArray());
    Connection closed(node);
    QCOMPARE(closed.readFrames(4), QByteArray("\x88\x02\x0f\xa0"));
    for (int i = 0; i < 2; ++i) {
        Connection usual(node);
        usual.readFrames(0);
        usual.send(ask);
        QVERIFY(usual.readFrames(10).contains("success"));
    }
}

void TestSimStreamFaults::beginsLater()
{
    const Node node("drop stream-after=3");
    QElapsedTimer timer;
    timer.start();
    Connection client(node);
    client.readFrames(0);
    client.send(ask);
    QVERIFY(client.readFrames(10).contains("success"));
    client.readAway();
    QVERIFY(timer.elapsed() >= 3000);
}

void TestSimStreamFaults::endsInTime()
{
    const Node node("silent stream-for=0.3");
    QElapsedTimer timer;
    timer.start();
    Connection client(node);
    QCOMPARE(client.readAway(), 0);
    QVERIFY(timer.elapsed() >= 300);
}

TIDEWICK_LOOPBACK_TEST_MAIN(TestSimStreamFaults)
#include "tst_simstreamfaults.moc"
