// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "platform/json/JsonRead.h"
#include "simnode/HttpMessage.h"
#include "simnode/Transmission.h"
#include "support/Surroundings.h"

#include <QJsonArray>
#include <QJsonDocument>

using namespace tidewick;
using namespace tidewick::sim;

Q_DECLARE_METATYPE(HttpInput::State)

class TestSimHttp : public QObject
{
    Q_OBJECT

private slots:
    void readsARequest();
    void readsOneOfTwo();
    void states_data();
    void states();
    void keepAlive_data();
    void keepAlive();
    void writesAHead();
    void changesAllTypes();
    void eachFaultChangesTheAnswer_data();
    void eachFaultChangesTheAnswer();
};

void TestSimHttp::readsARequest()
{
    const QByteArray bytes = "POST / HTTP/1.1\r\nHost: x\r\nCONTENT-LENGTH:  4 \r\n"
                             "Cookie: a=b\r\n\r\nbody";
    const HttpInput input = HttpInput::read(bytes);
    QCOMPARE(input.state, HttpInput::State::Complete);
    QCOMPARE(input.length, bytes.size());
    QCOMPARE(input.request.method, QByteArray("POST"));
    QCOMPARE(input.request.body, QByteArray("body"));
    QCOMPARE(input.request.cookie, QByteArray("a=b"));
}

void TestSimHttp::readsOneOfTwo()
{
    const QByteArray one = "POST / HTTP/1.1\r\nContent-Length: 1\r\n\r\n1";
    const HttpInput input = HttpInput::read(one + one);
    QCOMPARE(input.state, HttpInput::State::Complete);
    QCOMPARE(input.length, one.size());
}

void TestSimHttp::states_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<HttpInput::State>("state");

    using State = HttpInput::State;
    const auto row = [](const char *name, const QByteArray &bytes, State state) {
        QTest::newRow(name) << bytes << state;
    };
    row("empty", "", State::Incomplete);
    row("half a line", "POST /", State::Incomplete);
    row("no empty line", "POST / HTTP/1.1\r\nA: b\r\n", State::Incomplete);
    row("half a body", "POST / HTTP/1.1\r\nContent-Length: 9\r\n\r\n1234", State::Incomplete);
    row("no body", "GET / HTTP/1.1\r\n\r\n", State::Complete);
    row("no version", "POST /\r\n\r\n", State::Malformed);
    row("another version", "POST / HTTP/2\r\n\r\n", State::Malformed);
    row("not HTTP", "hello\r\n\r\n", State::Malformed);
    row("a line that is not a header", "POST / HTTP/1.1\r\nhello\r\n\r\n", State::Malformed);
    row("odd length", "POST / HTTP/1.1\r\nContent-Length: x\r\n\r\n", State::Malformed);
    row("negative length", "POST / HTTP/1.1\r\nContent-Length: -1\r\n\r\n", State::Malformed);
    row("chunked", "POST / HTTP/1.1\r\nTransfer-Encoding: chunked\r\n\r\n", State::Malformed);
    row("1 MiB", "POST / HTTP/1.1\r\nContent-Length: 1048576\r\n\r\n", State::Incomplete);
    row("more than 1 MiB", "POST / HTTP/1.1\r\nContent-Length: 1048577\r\n\r\n", State::TooLarge);
    row("endless line", QByteArray(20'000, 'x'), State::TooLarge);
    row("endless headers", "POST / HTTP/1.1\r\n" + QByteArray("A: b\r\n").repeated(4000) + "\r\n",
        State::TooLarge);
}

void TestSimHttp::states()
{
    QFETCH(QByteArray, bytes);
    QFETCH(HttpInput::State, state);
    QCOMPARE(HttpInput::read(bytes).state, state);
}

void TestSimHttp::keepAlive_data()
{
    QTest::addColumn<QByteArray>("head");
    QTest::addColumn<bool>("expected");
    QTest::newRow("1.1") << QByteArray("POST / HTTP/1.1\r\n") << true;
    QTest::newRow("1.1 close") << QByteArray("POST / HTTP/1.1\r\nConnection: Close\r\n") << false;
    QTest::newRow("1.0") << QByteArray("POST / HTTP/1.0\r\n") << false;
    QTest::newRow("1.0 kept") << QByteArray("POST / HTTP/1.0\r\nConnection: Keep-Alive\r\n")
                              << true;
}

void TestSimHttp::keepAlive()
{
    QFETCH(QByteArray, head);
    QFETCH(bool, expected);
    QCOMPARE(HttpInput::read(head + "\r\n").request.keepAlive, expected);
}

void TestSimHttp::writesAHead()
{
    HttpResponse response;
    response.extraHeaders = {"A: b"};
    const QByteArray head = response.head(12);
    QVERIFY(head.startsWith("HTTP/1.1 200 OK\r\n"));
    QVERIFY(head.contains("\r\nContent-Type: application/json; charset=UTF-8\r\n"));
    QVERIFY(head.contains("\r\nA: b\r\n"));
    QVERIFY(head.contains("\r\nContent-Length: 12\r\n"));
    QVERIFY(head.endsWith("\r\n\r\n"));
    QVERIFY(response.head(std::nullopt).contains("\r\nTransfer-Encoding: chunked\r\n"));
}

void TestSimHttp::changesAllTypes()
{
    HttpResponse usual;
    usual.body = R"({"result":{"a":1,"b":"x","c":true,"d":[1],"e":{"f":2,"g":null}}})";
    const QByteArray changed = transmissionFor(RpcFault::WrongTypes, usual, 0).response.body;
    const QJsonObject result =
        JsonRead::parseObject(changed).value_or(QJsonObject())[u"result"].toObject();
    QVERIFY(result[u"a"].isArray());
    QVERIFY(result[u"b"].isDouble());
    QVERIFY(result[u"c"].isObject());
    QVERIFY(result[u"d"].isString());
    QVERIFY(result[u"e"][u"f"].isArray());
    QVERIFY(result[u"e"][u"g"].isObject());
}

void TestSimHttp::eachFaultChangesTheAnswer_data()
{
    QTest::addColumn<int>("fault");
    for (int fault = 0; fault <= static_cast<int>(RpcFault::Close); ++fault)
        QTest::addRow("%d", fault) << fault;
}

/// Checks that each kind of misbehaviour differs from the normal answer.
void TestSimHttp::eachFaultChangesTheAnswer()
{
    QFETCH(int, fault);
    HttpResponse usual;
    usual.body = R"({"result":{"a":1}})";
    const Transmission sent = transmissionFor(static_cast<RpcFault>(fault), usual, 80);
    const bool differs = sent.response.body != usual.body || sent.response.status != usual.status
                         || sent.delivery != Delivery::Whole || sent.closes
                         || !sent.response.extraHeaders.isEmpty();
    QCOMPARE(differs, static_cast<RpcFault>(fault) > RpcFault::Recorded);
}

TIDEWICK_TEST_MAIN(TestSimHttp)
#include "tst_simhttp.moc"
