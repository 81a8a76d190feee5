// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "platform/json/JsonRead.h"
#include "platform/json/JsonWrite.h"
#include "support/Surroundings.h"

using namespace tidewick;

class TestJsonWrite : public QObject
{
    Q_OBJECT

private slots:
    void layout();
    void values_data();
    void values();
    void strings_data();
    void strings();
    void members();
    void recordedAnswer();
    void deepNesting();
};

namespace {

QString rewritten(const QByteArray &json)
{
    const auto object = JsonRead::parseObject(json);
    return object ? JsonWrite::pretty(*object) : QStringLiteral("not an object");
}

} // namespace

void TestJsonWrite::layout()
{
    QCOMPARE(rewritten(R"({"b":[1,true,"a/é"],"a":{},"c":[]})"), QStringLiteral(R"({
  "a" : {

  },
  "b" : [
    1,
    true,
    "a\/é"
  ],
  "c" : [

  ]
})"));
    QCOMPARE(rewritten("{}"), QStringLiteral("{\n\n}"));
    QCOMPARE(rewritten(R"({"a":{"b":{"c":null}}})"), QStringLiteral(R"({
  "a" : {
    "b" : {
      "c" : null
    }
  }
})"));
}

void TestJsonWrite::values_data()
{
    QTest::addColumn<QByteArray>("value");
    QTest::addColumn<QString>("expected");
    const auto row = [](const char *value, const char *expected) {
        QTest::addRow("%s", value) << QByteArray(value) << QString::fromLatin1(expected);
    };
    row("true", "true");
    row("false", "false");
    row("null", "null");
    row("0", "0");
    row("-5", "-5");
    row("1", "1");
    row("10.0", "10");
    row("256.0", "256");
    row("1e3", "1000");
    row("100000.0", "100000");
    row("1e15", "1000000000000000");
    row("9223372036854775807", "9223372036854775807");
    row("-9223372036854775808", "-9223372036854775808");
    row("9007199254740993", "9007199254740993");
    row("0.1", "0.1");
    row("12.1", "12.1");
    row("129.9", "129.9");
    row("3.001", "3.001");
    row("-0.45", "-0.45");
    row("1e-05", "1e-05");
    row("1e21", "1e+21");
    row("7.708700996619999", "7.708700996619999");
    row("35.658580999999998", "35.658581");
}

void TestJsonWrite::values()
{
    QFETCH(QByteArray, value);
    QFETCH(QString, expected);
    QCOMPARE(rewritten("{\"v\":" + value + '}'),
             QLatin1String("{\n  \"v\" : ") + expected + QLatin1String("\n}"));
}

void TestJsonWrite::strings_data()
{
    QTest::addColumn<QByteArray>("string");
    QTest::addColumn<QString>("expected");
    QTest::newRow("empty") << QByteArray() << QString();
    QTest::newRow("short forms") << QByteArray(R"(\"\\\/\b\f\n\r\t)")
                                 << QStringLiteral(R"(\"\\\/\b\f\n\r\t)");
    QTest::newRow("plain slash") << QByteArray("a/b") << QStringLiteral(R"(a\/b)");
    QTest::newRow("controls") << QByteArray(R"(\u0000\u0001\u001f)")
                              << QStringLiteral(R"(\u0000\u0001\u001f)");
    QTest::newRow("delete") << QByteArray("\x7f") << QStringLiteral("\x7f");
    QTest::newRow("separators") << QByteArray(R"(\u2028\u2029)") << QStringLiteral("\u2028\u2029");
    QTest::newRow("beyond the first plane")
        << QByteArray(R"(\uD834\udd1E)") << QStringLiteral("\U0001D11E");
    QTest::newRow("markup") << QByteArray("<b>&amp;</b>") << QStringLiteral(R"(<b>&amp;<\/b>)");
}

void TestJsonWrite::strings()
{
    QFETCH(QByteArray, string);
    QFETCH(QString, expected);
    QCOMPARE(rewritten("{\"v\":\"" + string + "\"}"),
             QLatin1String("{\n  \"v\" : \"") + expected + QLatin1String("\"\n}"));
    // Member names are written like strings.
    QCOMPARE(rewritten("{\"" + string + "\":1}"),
             QLatin1String("{\n  \"") + expected + QLatin1String("\" : 1\n}"));
}

void TestJsonWrite::members()
{
    const QString text = rewritten(R"({"foo12":1,"bar":2,"foo":3,"a_b":4,"foo1":5})");
    QCOMPARE(text, QStringLiteral("{\n  \"a_b\" : 4,\n  \"bar\" : 2,\n  \"foo\" : 3,\n"
                                  "  \"foo1\" : 5,\n  \"foo12\" : 1\n}"));
}

/// A recorded answer of a real node keeps its value when it is written and read again.
void TestJsonWrite::recordedAnswer()
{
    const std::filesystem::path folder(TIDEWICK_TEST_DATA "/wire");
    int answers = 0;
    for (const auto &entry : std::filesystem::directory_iterator(folder)) {
        const auto answer = JsonRead::parseObject(contentOf(entry.path()));
        if (!answer)
            continue; // a recording with one message per line
        ++answers;
        QCOMPARE(JsonRead::parseObject(JsonWrite::pretty(*answer).toUtf8()), answer);
    }
    QVERIFY(answers > 0);
}

/// As deep as the reader allows.
void TestJsonWrite::deepNesting()
{
    constexpr int depth = 1000;
    const QString text =
        rewritten("{\"v\":" + QByteArray(depth, '[') + QByteArray(depth, ']') + '}');
    QCOMPARE(text.count(u'['), depth);
    QVERIFY(text.endsWith(QLatin1String("\n  ]\n}")));
}

TIDEWICK_TEST_MAIN(TestJsonWrite)
#include "tst_jsonwrite.moc"
