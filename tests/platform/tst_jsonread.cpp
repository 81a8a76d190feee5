// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "platform/json/JsonRead.h"
#include "support/Surroundings.h"

#include <QJsonArray>
#include <QJsonDocument>

using namespace tidewick;

namespace {

/// The single element of a JSON array that contains this text.
QJsonValue valueOf(const QByteArray &text)
{
    return QJsonDocument::fromJson('[' + text + ']').array().at(0);
}

} // namespace

class TestJsonRead : public QObject
{
    Q_OBJECT

private slots:
    void parseObject_data();
    void parseObject();
    void casts_data();
    void casts();
    void absentIsNothing();
    void memberNamesMatchExactly();
};

void TestJsonRead::parseObject_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<bool>("valid");
    const auto row = [](const char *name, const QByteArray &text, bool valid) {
        QTest::newRow(name) << text << valid;
    };
    row("empty", "", false);
    row("whitespace", " \n", false);
    row("number", "3", false);
    row("string", "\"a\"", false);
    row("null", "null", false);
    row("array", "[]", false);
    row("object", "{}", true);
    row("trailing whitespace", "{} \t\r\n", true);
    row("trailing character", "{}x", false);
    row("two objects", "{}{}", false);
    row("byte order mark", "\xEF\xBB\xBF{}", true);
    row("not UTF-8", "{\"a\":\"\xFF\"}", false);
    row("trailing NUL", QByteArray("{}\0", 3), false);
    row("comment", "{/**/}", false);
    row("unquoted key", "{a:1}", false);
    row("infinite", "{\"a\":1e999}", false);
    row("deep", QByteArray(100'000, '{'), false);
    row("deep arrays", "{\"a\":" + QByteArray(5000, '[') + QByteArray(5000, ']') + '}', false);
}

void TestJsonRead::parseObject()
{
    QFETCH(QByteArray, text);
    QFETCH(bool, valid);
    QCOMPARE(JsonRead::parseObject(text).has_value(), valid);
}

void TestJsonRead::casts_data()
{
    using Integer = std::optional<qint64>;
    using Number = std::optional<double>;
    using Boolean = std::optional<bool>;
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<Integer>("integer");
    QTest::addColumn<Number>("number");
    QTest::addColumn<Boolean>("boolean");
    const auto row = [](const char *text, Integer integer, Number number, Boolean boolean) {
        QTest::newRow(text) << QByteArray(text) << integer << number << boolean;
    };
    row("12", 12, 12, {});
    row("12.0", 12, 12, {});
    row("12.5", {}, 12.5, {});
    row("1e3", 1000, 1000, {});
    row("-0", 0, 0, false);
    row("true", 1, 1, true);
    row("false", 0, 0, false);
    row("0", 0, 0, false);
    row("0.0", 0, 0, false);
    row("1", 1, 1, true);
    row("1.0", 1, 1, true);
    row("2", 2, 2, {});
    row("-1", -1, -1, {});
    row("0.25", {}, 0.25, {});
    row("9223372036854775807", 9223372036854775807, 9223372036854775807.0, {});
    row("9223372036854775808", {}, 9223372036854775808.0, {});
    row("100000000000000000000000", {}, 1e23, {});
    row("9007199254740993", 9007199254740993, 9007199254740992.0, {});
    row("\"12\"", {}, {}, {});
    row("null", {}, {}, {});
    row("{}", {}, {}, {});
    row("[1]", {}, {}, {});
}

void TestJsonRead::casts()
{
    QFETCH(QByteArray, text);
    QFETCH(std::optional<qint64>, integer);
    QFETCH(std::optional<double>, number);
    QFETCH(std::optional<bool>, boolean);
    const QJsonValue value = valueOf(text);
    QCOMPARE(JsonRead::integer(value), integer);
    QCOMPARE(JsonRead::number(value), number);
    QCOMPARE(JsonRead::boolean(value), boolean);
    QCOMPARE(JsonRead::string(value).has_value(), value.isString());
    QCOMPARE(JsonRead::object(value).has_value(), value.isObject());
}

void TestJsonRead::absentIsNothing()
{
    const QJsonObject empty;
    QVERIFY(!JsonRead::string(empty[u"a"]));
    QVERIFY(!JsonRead::object(empty[u"a"]));
    QVERIFY(!JsonRead::integer(empty[u"a"]));
    QVERIFY(!JsonRead::number(empty[u"a"]));
    QVERIFY(!JsonRead::boolean(empty[u"a"]));
}

void TestJsonRead::memberNamesMatchExactly()
{
    const auto object = JsonRead::parseObject(R"({"a\u0000":1,"bc":2,"d":3,"d\u0000":4,"":5})");
    QVERIFY(object);
    const auto member = [&](const char *name) {
        return JsonRead::member(*object, QLatin1String(name));
    };
    QVERIFY(member("a").isUndefined());
    QVERIFY(member("b").isUndefined());
    QVERIFY(member("bcd").isUndefined());
    QCOMPARE(member("bc"), QJsonValue(2));
    QCOMPARE(member("d"), QJsonValue(3));
    QCOMPARE(member(""), QJsonValue(5));
    QCOMPARE(JsonRead::member(*object, QLatin1String("a\0", 2)), QJsonValue(1));
    QCOMPARE(JsonRead::member(*object, QLatin1String("d\0", 2)), QJsonValue(4));
}

TIDEWICK_TEST_MAIN(TestJsonRead)
#include "tst_jsonread.moc"
