// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "StreamClient.h"
#include "support/RawWebSocketServer.h"
#include "support/Surroundings.h"

#include <QTimer>

using namespace tidewick;

namespace {

using Server = RawWebSocketServer;

constexpr qsizetype largest = 16LL * 1024 * 1024;

/// A text to wait for after frames that produce none.
const QString ready = QStringLiteral("ready");

/// A text in fragments of this many bytes.
QByteArray inPieces(const QByteArray &payload, qsizetype size)
{
    QByteArray bytes;
    for (qsizetype at = 0; at < payload.size(); at += size) {
        const bool last = at + size >= payload.size();
        const quint8 middle = last ? Server::end : Server::middle;
        const quint8 first = last ? Server::text : Server::textBegin;
        bytes += Server::frame(at == 0 ? first : middle, payload.mid(at, size));
    }
    return bytes;
}

} // namespace

/// Tests what arrives on an open connection.
class TestNodeStreamFrames : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void texts_data();
    void texts();
    void pings();
    void protocolErrors_data();
    void protocolErrors();
    void maskedFrames();
    void largestText_data();
    void largestText();
    void tooLarge_data();
    void tooLarge();
    void manyMessages();

private:
    std::unique_ptr<Server> m_server;
    std::unique_ptr<StreamClient> m_client;
};

void TestNodeStreamFrames::init()
{
    m_client.reset();
    m_server.reset();
    m_server = std::make_unique<Server>();
    m_client = std::make_unique<StreamClient>();
    QTRY_VERIFY(m_server->isOpen());
}

void TestNodeStreamFrames::texts_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QStringList>("texts");
    const QByteArray long1 = QByteArray(126, 'a');
    const QByteArray long2 = QByteArray(65536, 'b');
    const auto row = [](const char *name, const QByteArray &bytes, const QStringList &texts) {
        QTest::newRow(name) << bytes << texts;
    };
    row("one", Server::frame(Server::text, "{}\n"), {QStringLiteral("{}\n")});
    row("empty", Server::frame(Server::text, {}), {QString()});
    row("of any length", Server::frame(Server::text, long1) + Server::frame(Server::text, long2),
        {QString::fromUtf8(long1), QString::fromUtf8(long2)});
    row("NUL", Server::frame(Server::text, QByteArray("a\0b", 3)),
        {QStringLiteral("a") + QChar(0) + u'b'});
    row("in pieces", inPieces("hello", 2), {QStringLiteral("hello")});
    row("in empty pieces",
        Server::frame(Server::textBegin, {}) + Server::frame(Server::middle, {})
            + Server::frame(Server::end, "x"),
        {QStringLiteral("x")});
    row("a ping between pieces",
        Server::frame(Server::textBegin, "a") + Server::frame(Server::ping, "p")
            + Server::frame(Server::end, "b"),
        {QStringLiteral("ab")});
    row("binary between",
        Server::frame(Server::text, "a") + Server::frame(Server::binary, "b")
            + Server::frame(Server::text, "c"),
        {QStringLiteral("a"), QStringLiteral("c")});
    row("binary, not UTF-8",
        Server::frame(Server::binary, QByteArray("\xff\0\xfe", 3))
            + Server::frame(Server::text, "c"),
        {QStringLiteral("c")});
    row("unsolicited pong", Server::frame(Server::pong, "x") + Server::frame(Server::text, "c"),
        {QStringLiteral("c")});
}

void TestNodeStreamFrames::texts()
{
    QFETCH(QByteArray, bytes);
    QFETCH(QStringList, texts);
    m_server->send(bytes);
    QTRY_COMPARE(m_client->texts(), texts);
    QCOMPARE(m_client->failures(), 0);

    // The same bytes, one at a time.
    if (bytes.size() > 1000)
        return;
    for (const char byte : bytes) {
        m_server->send(QByteArray(1, byte));
        m_server->connection()->flush();
        QCoreApplication::processEvents();
    }
    QTRY_COMPARE(m_client->texts(), texts + texts);
    QCOMPARE(m_client->failures(), 0);
}

void TestNodeStreamFrames::pings()
{
    const QByteArray longest(125, 'p');
    m_server->send(Server::ping, {});
    m_server->send(Server::ping, longest);
    m_client->stream().send(ready);
    const QList<Server::Frame> expected{
        {Server::text, ready.toUtf8()}, {Server::pong, {}}, {Server::pong, longest}};
    QTRY_COMPARE(m_server->frames(), expected);
    QVERIFY(m_client->texts().isEmpty());
}

void TestNodeStreamFrames::protocolErrors_data()
{
    QTest::addColumn<QByteArray>("bytes");
    const auto row = [](const char *name, const QByteArray &bytes) {
        QTest::newRow(name) << bytes;
    };
    row("not UTF-8", Server::frame(Server::text, "\xff"));
    row("surrogates in UTF-8", Server::frame(Server::text, "\xed\xa0\xbd"));
    row("overlong UTF-8", Server::frame(Server::text, "\xc0\x80"));
    row("truncated character", Server::frame(Server::text, "\xe2\x82"));
    // This would be valid, but QWebSocket rejects fragments that end within a character. A node's
    // texts are all ASCII.
    row("a character in pieces",
        Server::frame(Server::textBegin, "\xe2\x82") + Server::frame(Server::end, "\xac"));
    row("length not in the shortest form", QByteArray("\x81\x7e\x00\x01x", 5));
    for (const int bit : {0x40, 0x20, 0x10})
        QTest::addRow("reserved bit %#x", bit) << Server::frame(quint8(Server::text | bit), "x");
    for (const int opcode : {3, 7, 11, 15})
        QTest::addRow("unknown opcode %d", opcode) << Server::frame(quint8(0x80 | opcode), "x");
    row("continuation of nothing", Server::frame(Server::end, "x"));
    row("text within a fragmented text",
        Server::frame(Server::textBegin, "x") + Server::frame(Server::text, "y"));
    row("a ping too large", Server::frame(Server::ping, QByteArray(126, 'x')));
    row("a ping in pieces", Server::frame(0x09, "x"));
}

void TestNodeStreamFrames::protocolErrors()
{
    QFETCH(QByteArray, bytes);
    m_server->send(Server::frame(Server::text, "good"));
    m_server->send(bytes);
    m_server->send(Server::frame(Server::text, "after"));
    QTRY_COMPARE(m_client->failures(), 1);
    QCOMPARE(m_client->texts(), QStringList(QStringLiteral("good")));
    QTest::qWait(30);
    QCOMPARE(m_client->failures(), 1);
    QCOMPARE(m_client->texts().size(), 1);
}

/// Servers should not mask their frames, but it does no harm.
void TestNodeStreamFrames::maskedFrames()
{
    m_server->send(QByteArray("\x81\x82\x01\x02\x03\x04", 6) + char('h' ^ 1) + char('i' ^ 2));
    QTRY_COMPARE(m_client->texts(), QStringList(QStringLiteral("hi")));
}

void TestNodeStreamFrames::largestText_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::newRow("one frame") << Server::frame(Server::text, QByteArray(largest, 'x'));
    QTest::newRow("pieces") << inPieces(QByteArray(largest, 'x'), 65536);
}

void TestNodeStreamFrames::largestText()
{
    QFETCH(QByteArray, bytes);
    for (int i = 1; i <= 3; ++i) {
        m_server->send(bytes);
        QTRY_COMPARE_WITH_TIMEOUT(m_client->texts().size(), i, 30'000);
        QCOMPARE(m_client->texts().last().size(), largest);
    }
    QCOMPARE(m_client->failures(), 0);
}

void TestNodeStreamFrames::tooLarge_data()
{
    QTest::addColumn<QByteArray>("bytes");
    const QByteArray text(largest + 1, 'x');
    const QByteArray euros = QByteArray("\xe2\x82\xac").repeated(largest / 3 + 1);
    const auto row = [](const char *name, const QByteArray &bytes) {
        QTest::newRow(name) << bytes;
    };
    row("one frame", Server::frame(Server::text, text));
    row("pieces", inPieces(text, 65536));
    row("small pieces", inPieces(text, 1000));
    row("not ASCII", Server::frame(Server::text, euros));
    row("not ASCII, in pieces", inPieces(euros, 65535));
    row("binary", Server::frame(Server::binary, text));
    row("announced only", QByteArray("\x81\x7f\x00\x00\x00\x00\x01\x00\x00\x01", 10));
    row("announced as huge", QByteArray("\x81\x7f\x7f\xff\xff\xff\xff\xff\xff\xff", 10));
    row("announced as negative", QByteArray("\x81\x7f\xff\xff\xff\xff\xff\xff\xff\xff", 10));
}

void TestNodeStreamFrames::tooLarge()
{
    QFETCH(QByteArray, bytes);
    m_server->send(bytes);
    QTRY_COMPARE_WITH_TIMEOUT(m_client->failures(), 1, 30'000);
    QVERIFY(m_client->texts().isEmpty());
}

/// All messages arrive, in order, and other events are processed in the meantime.
void TestNodeStreamFrames::manyMessages()
{
    constexpr int messages = 50'000;
    QByteArray bytes;
    for (int i = 0; i < messages; ++i)
        bytes += Server::frame(Server::text, QByteArray::number(i).leftJustified(600, ' '));
    int turns = 0;
    QTimer timer;
    connect(&timer, &QTimer::timeout, this, [&] {
        const auto arrived = m_client->texts().size();
        turns += arrived > 0 && arrived < messages ? 1 : 0;
    });
    timer.start(1);
    m_server->send(bytes);
    QTRY_COMPARE_WITH_TIMEOUT(m_client->texts().size(), messages, 60'000);
    for (int i = 0; i < messages; ++i)
        QCOMPARE(m_client->texts().at(i).trimmed().toInt(), i);
    QVERIFY(turns > 0);
    QCOMPARE(m_client->failures(), 0);
}

TIDEWICK_LOOPBACK_TEST_MAIN(TestNodeStreamFrames)
#include "tst_nodestream_frames.moc"
