// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "node/HttpResponseReader.h"
#include "support/Surroundings.h"

using namespace tidewick;
using State = HttpResponseReader::State;

namespace {

constexpr quint64 largestBody = 20;

/// The body, if the bytes arrive in pieces of this size and then the connection closes; nothing if
/// they do not form a complete response.
std::optional<std::string> bodyOf(const QByteArray &bytes, qsizetype atATime)
{
    HttpResponseReader reader(largestBody);
    for (qsizetype at = 0; at < bytes.size(); at += atATime)
        reader.take(bytes.mid(at, atATime));
    if (reader.end() != State::Complete)
        return std::nullopt;
    return reader.takeBody();
}

} // namespace

/// Tests responses as bytes, well-formed and malformed, in one piece and in several.
class TestHttpResponseReader : public QObject
{
    Q_OBJECT

private slots:
    void bodies_data();
    void bodies();
    void isCompleteWithItsLastByte_data();
    void isCompleteWithItsLastByte();
    void headerHasALimit_data();
    void headerHasALimit();
    void bodyHasALimit_data();
    void bodyHasALimit();
    void staysInItsFinalState();
};

void TestHttpResponseReader::bodies_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<std::optional<std::string>>("body");
    const auto row = [](const char *name, const QByteArray &bytes,
                        const std::optional<std::string> &body = {}) {
        QTest::newRow(name) << bytes << body;
    };
    const QByteArray ok = "HTTP/1.1 200 OK\r\n";
    const QByteArray chunked = ok + "Transfer-Encoding: chunked\r\n\r\n";

    row("length", ok + "Content-Length: 2\r\n\r\nab", "ab");
    row("length, more follows", ok + "Content-Length: 2\r\n\r\nabHTTP/1.1", "ab");
    row("length 0", ok + "Content-Length: 0\r\n\r\n", "");
    row("truncated", ok + "Content-Length: 3\r\n\r\nab");
    row("length not a number", ok + "Content-Length: 2x\r\n\r\nab");
    row("negative length", ok + "Content-Length: -1\r\n\r\nab");
    row("huge length", ok + "Content-Length: 99999999999999999999\r\n\r\nab");
    row("two lengths", ok + "Content-Length: 1\r\nContent-Length: 2\r\n\r\nab");
    row("length and chunks",
        ok + "Content-Length: 1\r\nTransfer-Encoding: chunked\r\n\r\n2\r\nab\r\n0\r\n\r\n");
    row("to the end", "HTTP/1.0 200 OK\r\n\r\nab", "ab");
    row("to the end, empty", "HTTP/1.0 200 OK\r\n\r\n", "");
    row("chunks", chunked + "1\r\na\r\n01;x=y\r\nb\r\n0\r\n\r\n", "ab");
    row("chunks, trailer", chunked + "A\r\n0123456789\r\n0\r\nX: y\r\n\r\n", "0123456789");
    row("no chunks", chunked + "0\r\n\r\n", "");
    row("truncated after a chunk", chunked + "1\r\na\r\n");
    row("truncated in the trailer", chunked + "1\r\na\r\n0\r\nX: y\r\n");
    row("chunk without size", chunked + "\r\na\r\n0\r\n\r\n");
    row("chunk longer than announced", chunked + "1\r\nab\r\n0\r\n\r\n");
    row("chunk size wraps", chunked + "10000000000000001\r\na\r\n0\r\n\r\n");
    row("interim", "HTTP/1.1 100 Continue\r\n\r\n" + ok + "Content-Length: 2\r\n\r\nab", "ab");
    row("interim only", "HTTP/1.1 100 Continue\r\n\r\n");
    row("other protocol", "HTTP/1.1 101 Switching Protocols\r\n\r\nab", "");
    row("no content", "HTTP/1.1 204 No Content\r\n\r\n", "");
    row("no reason", "HTTP/1.1 200 \r\nContent-Length: 2\r\n\r\nab", "ab");
    row("empty", "");
    row("status line only", ok);
    row("garbage", "garbage\r\n\r\nab");
    row("HTTP/2", "HTTP/2.0 200 OK\r\nContent-Length: 2\r\n\r\nab");
    row("zero byte", QByteArray("\0\r\n\r\n", 5));
    row("header without colon", ok + "Content-Length 2\r\n\r\nab");
}

/// The response is the same however its bytes are split on arrival.
void TestHttpResponseReader::bodies()
{
    QFETCH(QByteArray, bytes);
    QFETCH(std::optional<std::string>, body);
    for (qsizetype atATime = qMax<qsizetype>(bytes.size(), 1); atATime > 0; --atATime)
        QVERIFY2(bodyOf(bytes, atATime) == body, qPrintable(QString::number(atATime)));
}

void TestHttpResponseReader::isCompleteWithItsLastByte_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::newRow("length") << QByteArray("HTTP/1.1 200 OK\r\nContent-Length: 2\r\n\r\nab");
    QTest::newRow("length 0") << QByteArray("HTTP/1.1 200 OK\r\nContent-Length: 0\r\n\r\n");
    QTest::newRow("chunks") << QByteArray(
        "HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\n\r\n1\r\na\r\n0\r\n\r\n");
}

/// The caller does not have to wait for the node to close the connection.
void TestHttpResponseReader::isCompleteWithItsLastByte()
{
    QFETCH(QByteArray, bytes);
    HttpResponseReader reader(largestBody);
    for (const char byte : bytes.chopped(1))
        QCOMPARE(reader.take(QByteArrayView(&byte, 1)), State::Incomplete);
    QCOMPARE(reader.take(bytes.last(1)), State::Complete);
}

void TestHttpResponseReader::headerHasALimit_data()
{
    QTest::addColumn<QByteArray>("begin");
    QTest::addColumn<QByteArray>("repeated");
    const QByteArray chunked = "HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\n\r\n";
    QTest::newRow("status line") << QByteArray("HTTP/1.1 200 ") << QByteArray("x");
    QTest::newRow("one header") << QByteArray("HTTP/1.1 200 OK\r\nX: ") << QByteArray("x");
    QTest::newRow("many headers") << QByteArray("HTTP/1.1 200 OK\r\n") << QByteArray("X: y\r\n");
    QTest::newRow("chunk size") << chunked << QByteArray("0");
    QTest::newRow("chunk extension") << QByteArray(chunked + "1;") << QByteArray("x");
    QTest::newRow("trailers") << QByteArray(chunked + "0\r\n") << QByteArray("X: y\r\n");
    QTest::newRow("interim responses") << QByteArray() << QByteArray("HTTP/1.1 100 C\r\n\r\n");
}

void TestHttpResponseReader::headerHasALimit()
{
    QFETCH(QByteArray, begin);
    QFETCH(QByteArray, repeated);
    HttpResponseReader reader(largestBody);
    reader.take(begin);
    qsizetype taken = 0;
    while (reader.take(repeated.repeated(100)) == State::Incomplete && taken < 1'000'000)
        taken += repeated.size() * 100;
    QVERIFY2(taken <= qsizetype{2} * HttpResponseReader::largestHeader,
             qPrintable(QString::number(taken)));
}

void TestHttpResponseReader::bodyHasALimit_data()
{
    QTest::addColumn<QByteArray>("header");
    QTest::addColumn<QByteArray>("before");
    QTest::addColumn<QByteArray>("after");
    const QByteArray ok = "HTTP/1.1 200 OK\r\n";
    QTest::newRow("length 20") << QByteArray(ok + "Content-Length: 20\r\n\r\n") << QByteArray()
                               << QByteArray();
    QTest::newRow("to the end") << QByteArray("HTTP/1.0 200 OK\r\n\r\n") << QByteArray()
                                << QByteArray();
    QTest::newRow("chunk") << QByteArray(ok + "Transfer-Encoding: chunked\r\n\r\n")
                           << QByteArray("14\r\n") << QByteArray("\r\n0\r\n\r\n");
}

void TestHttpResponseReader::bodyHasALimit()
{
    QFETCH(QByteArray, header);
    QFETCH(QByteArray, before);
    QFETCH(QByteArray, after);
    const QByteArray body(largestBody, 'x');
    QCOMPARE(bodyOf(header + before + body + after, 1), body.toStdString());
    header.replace("20\r\n\r\n", "21\r\n\r\n");
    before.replace("14", "15");
    QCOMPARE(bodyOf(header + before + body + "x" + after, 1), std::nullopt);
    QCOMPARE(bodyOf(header + before + body + "x" + after, 1000), std::nullopt);
}

void TestHttpResponseReader::staysInItsFinalState()
{
    const QByteArray good = "HTTP/1.1 200 OK\r\nContent-Length: 2\r\n\r\nab";
    HttpResponseReader complete(largestBody);
    QCOMPARE(complete.take(good), State::Complete);
    QCOMPARE(complete.take("garbage"), State::Complete);
    QCOMPARE(complete.end(), State::Complete);
    QCOMPARE(complete.takeBody(), std::string("ab"));

    HttpResponseReader broken(largestBody);
    QCOMPARE(broken.take("garbage\r\n\r\n"), State::Broken);
    QCOMPARE(broken.take(good), State::Broken);
    QCOMPARE(broken.end(), State::Broken);
}

TIDEWICK_TEST_MAIN(TestHttpResponseReader)
#include "tst_httpresponsereader.moc"
