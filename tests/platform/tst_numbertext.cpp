// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "platform/text/NumberText.h"
#include "support/Surroundings.h"

#include <clocale>
#include <cmath>
#include <limits>

using namespace tidewick;

namespace {

constexpr double infinity = std::numeric_limits<double>::infinity();
constexpr qint64 largest = std::numeric_limits<qint64>::max();
constexpr qint64 smallest = std::numeric_limits<qint64>::min();

} // namespace

class TestNumberText : public QObject
{
    Q_OBJECT

private slots:
    void fixed_data();
    void fixed();
    void fixedIgnoresTheLocale();
    void shortest_data();
    void shortest();
    void integer_data();
    void integer();
    void real_data();
    void real();
    void leadingInteger_data();
    void leadingInteger();
    void leadingReal_data();
    void leadingReal();
    void truncated_data();
    void truncated();
};

void TestNumberText::fixed_data()
{
    QTest::addColumn<double>("value");
    QTest::addColumn<int>("decimals");
    QTest::addColumn<QString>("expected");
    const auto row = [](double value, int decimals, const char *expected) {
        QTest::addRow("%.*g to %d", 17, value, decimals)
            << value << decimals << QString::fromLatin1(expected);
    };

    // Exact ties round to the even digit.
    row(0.25, 1, "0.2");
    row(0.75, 1, "0.8");
    row(1.25, 1, "1.2");
    row(2.25, 1, "2.2");
    row(12.25, 1, "12.2");
    row(0.5, 0, "0");
    row(1.5, 0, "2");
    row(2.5, 0, "2");
    row(3.5, 0, "4");
    row(42.5, 0, "42");
    row(99.5, 0, "100");
    row(100.5, 0, "100");
    // A tie in decimal notation is not a tie in binary.
    row(0.05, 1, "0.1");
    row(0.15, 1, "0.1");
    row(0.35, 1, "0.3");
    row(0.45, 1, "0.5");
    row(1.05, 1, "1.1");
    row(9.95, 1, "9.9");
    row(999.95, 1, "1000.0");
    row(0.04, 1, "0.0");
    row(-0.04, 1, "-0.0");
    row(5, 1, "5.0");
    row(10.0 * 1073741824 / 1073741824, 1, "10.0");
    row(1288490188.8 / 1073741824, 1, "1.2");
    row(infinity, 1, "inf");
}

void TestNumberText::fixed()
{
    QFETCH(double, value);
    QFETCH(int, decimals);
    QFETCH(QString, expected);
    QCOMPARE(NumberText::fixed(value, decimals), expected);
}

void TestNumberText::fixedIgnoresTheLocale()
{
    // Sets another decimal separator: for C's own functions if such a locale is installed, and for
    // Qt's.
    const std::string before = std::setlocale(LC_ALL, nullptr);
    for (const char *name : {"de_DE.UTF-8", "de_DE.utf8", "fr_FR.UTF-8"})
        std::setlocale(LC_ALL, name);
    const QLocale qtBefore;
    QLocale::setDefault(QLocale(QLocale::German));
    QCOMPARE(NumberText::fixed(1234567.25, 1), QStringLiteral("1234567.2"));
    QCOMPARE(NumberText::real(u"1.5"), std::optional(1.5));
    QCOMPARE(NumberText::real(u"1,5"), std::nullopt);
    QLocale::setDefault(qtBefore);
    std::setlocale(LC_ALL, before.c_str());
}

void TestNumberText::shortest_data()
{
    QTest::addColumn<double>("value");
    QTest::addColumn<QString>("expected");
    const auto row = [](double value, const char *expected) {
        QTest::addRow("%s", expected) << value << QString::fromLatin1(expected);
    };
    row(0.1, "0.1");
    row(12.1, "12.1");
    row(129.9, "129.9");
    row(3.001, "3.001");
    row(1e-05, "1e-05");
    row(1e21, "1e+21");
    row(256, "256");
    row(0, "0");
    row(-7, "-7");
    row(100000, "100000");
    row(1e15, "1000000000000000");
    row(9007199254740991, "9007199254740991");
    row(7.708700996619999, "7.708700996619999");
}

void TestNumberText::shortest()
{
    QFETCH(double, value);
    QFETCH(QString, expected);
    QCOMPARE(QString::fromStdString(NumberText::shortest(value)), expected);
    QCOMPARE(NumberText::real(expected), std::optional(value));
}

void TestNumberText::integer_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<bool>("valid");
    QTest::addColumn<qint64>("value");
    const auto good = [](const char *text, qint64 value) {
        QTest::addRow("'%s'", text) << QString::fromUtf8(text) << true << value;
    };
    good("0", 0);
    good("17", 17);
    good("010", 10);
    good("+5", 5);
    good("+010", 10);
    good("-0", 0);
    good("9223372036854775807", largest);
    good("-9223372036854775808", smallest);
    const auto bad = [](const char *text) {
        QTest::addRow("'%s'", text) << QString::fromUtf8(text) << false << qint64(0);
    };
    for (const char *text :
         {" 5", "5 ", "", "+", "-", "--0", "-+5", "+-5", "1_000", "12abc", "1e3", "0x10", "5.0",
          "9223372036854775808", "-9223372036854775809", "99999999999999999999999", "٣", "５", "𝟏"})
        bad(text);
}

void TestNumberText::integer()
{
    QFETCH(QString, text);
    QFETCH(bool, valid);
    QFETCH(qint64, value);
    QCOMPARE(NumberText::integer(text), valid ? std::optional(value) : std::nullopt);
}

void TestNumberText::real_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<bool>("valid");
    QTest::addColumn<double>("value");
    const auto good = [](const char *text, double value) {
        QTest::addRow("'%s'", text) << QString::fromUtf8(text) << true << value;
    };
    good("1", 1);
    good("-1", -1);
    good("007", 7);
    good("+1", 1);
    good("1.", 1);
    good(".5", 0.5);
    good("1e3", 1000);
    good("1E+3", 1000);
    good("2837.5e-2", 28.375);
    good("-0", 0);
    good("1e999", infinity);
    good("-1e999", -infinity);
    good("1e-999", 0);
    const auto bad = [](const char *text) {
        QTest::addRow("'%s'", text) << QString::fromUtf8(text) << false << 0.0;
    };
    for (const char *text :
         {" 1", "1 ", "1\t", "\n1", "",    "1_000", "1,5", "99x",      "0FACE", "--1", "1e", "1e+",
          "+",  "-",  ".",   "-.",  ".e1", "0x10",  "inf", "Infinity", "nan",   "１",  "٣",  "𝟏"})
        bad(text);
}

void TestNumberText::real()
{
    QFETCH(QString, text);
    QFETCH(bool, valid);
    QFETCH(double, value);
    QCOMPARE(NumberText::real(text), valid ? std::optional(value) : std::nullopt);
}

void TestNumberText::leadingInteger_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<qint64>("value");
    const auto row = [](const QString &text, qint64 value) {
        QTest::addRow("'%s'", qUtf8Printable(text)) << text << value;
    };
    row(QStringLiteral("12"), 12);
    row(QStringLiteral("1234"), 1234);
    row(QStringLiteral("-5"), -5);
    row(QStringLiteral("12abc"), 12);
    row(QStringLiteral("abc"), 0);
    row(QString(), 0);
    row(QStringLiteral(" 7"), 7);
    row(QStringLiteral("+123"), 123);
    row(QStringLiteral("-123a"), -123);
    row(QStringLiteral("++123"), 0);
    row(QStringLiteral("--123"), 0);
    row(QStringLiteral("1e3"), 1);
    row(QStringLiteral("12.9"), 12);
    row(QStringLiteral("-12.9"), -12);
    row(QStringLiteral("0x10"), 0);
    row(QString(30, u'9'), largest);
    row(u'-' + QString(30, u'9'), smallest);
}

void TestNumberText::leadingInteger()
{
    QFETCH(QString, text);
    QFETCH(qint64, value);
    QCOMPARE(NumberText::leadingInteger(text), value);
}

void TestNumberText::leadingReal_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<double>("value");
    const auto row = [](const char *text, double value) {
        QTest::addRow("'%s'", text) << QString::fromLatin1(text) << value;
    };
    row("12.34", 12.34);
    row("1E3", 1000);
    row("1.2.3.4", 1.2);
    row(".e12", 0);
    row("abc", 0);
    row("", 0);
    row("5e", 5);
    row("5e+", 5);
    row("7x", 7);
}

void TestNumberText::leadingReal()
{
    QFETCH(QString, text);
    QFETCH(double, value);
    QCOMPARE(NumberText::leadingReal(text), value);
}

void TestNumberText::truncated_data()
{
    QTest::addColumn<double>("value");
    QTest::addColumn<qint64>("expected");
    QTest::newRow("down") << 12.9 << qint64(12);
    QTest::newRow("up") << -12.9 << qint64(-12);
    QTest::newRow("2^63") << 9223372036854775808.0 << largest;
    QTest::newRow("-2^63") << -9223372036854775808.0 << smallest;
    QTest::newRow("below") << -1e19 << smallest;
    QTest::newRow("infinite") << infinity << largest;
    QTest::newRow("minus infinite") << -infinity << smallest;
    QTest::newRow("not a number") << std::nan("") << qint64(0);
}

void TestNumberText::truncated()
{
    QFETCH(double, value);
    QFETCH(qint64, expected);
    QCOMPARE(NumberText::truncated(value), expected);
}

TIDEWICK_TEST_MAIN(TestNumberText)
#include "tst_numbertext.moc"
