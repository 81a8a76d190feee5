// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "support/Surroundings.h"
#include "ui/terminal/TerminalText.h"

using namespace tidewick;

class TestTerminalText : public QObject
{
    Q_OBJECT

private slots:
    void columns_data();
    void columns();
    void elided_data();
    void elided();
    void wrapped_data();
    void wrapped();
    void wrappedLines_data();
    void wrappedLines();
};

void TestTerminalText::columns_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<int>("expected");
    QTest::newRow("empty") << QString() << 0;
    QTest::newRow("letters") << QStringLiteral("Full") << 4;
    QTest::newRow("punctuation that we use") << QStringLiteral("–·…") << 3;
    QTest::newRow("wide") << QStringLiteral("日本") << 4;
    QTest::newRow("combining accent") << QStringLiteral("e\u0301") << 1;
    QTest::newRow("emoji") << QStringLiteral("😀") << 2;
    QTest::newRow("emoji presentation") << QStringLiteral("❤\ufe0f") << 2;
    QTest::newRow("joined emoji, counted one by one") << QStringLiteral("👩‍🚀") << 4;
    QTest::newRow("invisible") << QStringLiteral("\u200b\u200f") << 0;
    QTest::newRow("unknown to the C library") << QString::fromUcs4(U"\U000e0fff") << 2;
    QTest::newRow("lone surrogate") << QString(QChar(0xd83d)) << 1;
}

void TestTerminalText::columns()
{
    QFETCH(QString, text);
    QFETCH(int, expected);
    QCOMPARE(TerminalText::columns(text), expected);
}

void TestTerminalText::elided_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<int>("columns");
    QTest::addColumn<QString>("expected");
    const auto row = [](const char *name, const QString &text, int columns,
                        const QString &expected) {
        QTest::newRow(name) << text << columns << expected;
    };
    row("empty", {}, 4, {});
    row("just as wide", QStringLiteral("Full"), 4, QStringLiteral("Full"));
    row("wider", QStringLiteral("Peers"), 4, QStringLiteral("Pee…"));
    row("one column", QStringLiteral("Peers"), 1, QStringLiteral("…"));
    row("wide, even", QStringLiteral("日本語"), 4, QStringLiteral("日…"));
    row("wide, odd", QStringLiteral("日本語"), 5, QStringLiteral("日本…"));
    row("wide, fitting", QStringLiteral("日本語"), 6, QStringLiteral("日本語"));
    row("accents stay with their letter", QStringLiteral("e\u0301e\u0301e\u0301"), 2,
        QStringLiteral("e\u0301…"));
    row("emoji stay whole", QStringLiteral("a👩‍🚀b"), 4, QStringLiteral("a…"));
    row("invisible characters take no room", QStringLiteral("ab\u200b"), 2,
        QStringLiteral("ab\u200b"));
}

void TestTerminalText::elided()
{
    QFETCH(QString, text);
    QFETCH(int, columns);
    QFETCH(QString, expected);
    QCOMPARE(TerminalText::elided(text, columns), expected);
}

void TestTerminalText::wrapped_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<int>("columns");
    QTest::addColumn<QList<QString>>("expected");
    const auto row = [](const char *text, int columns, const QList<QString> &expected) {
        QTest::newRow(text) << QString::fromUtf8(text) << columns << expected;
    };
    row("", 10, {QString()});
    row("fits here", 9, {QStringLiteral("fits here")});
    row("one two three", 9, {QStringLiteral("one two"), QStringLiteral("three")});
    row("one two  three", 8, {QStringLiteral("one two"), QStringLiteral("three")});
    row("a unbreakable b", 5,
        {QStringLiteral("a"), QStringLiteral("unbre"), QStringLiteral("akabl"),
         QStringLiteral("e b")});
    row("日本 語日本", 5, {QStringLiteral("日本"), QStringLiteral("語日"), QStringLiteral("本")});
    row("e\u0301e\u0301 e\u0301", 2, {QStringLiteral("e\u0301e\u0301"), QStringLiteral("e\u0301")});
}

void TestTerminalText::wrapped()
{
    QFETCH(QString, text);
    QFETCH(int, columns);
    QFETCH(QList<QString>, expected);
    QCOMPARE(TerminalText::wrapped(text, columns), expected);
}

void TestTerminalText::wrappedLines_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<int>("columns");
    QTest::addColumn<int>("expected");
    QTest::newRow("empty") << QString() << 10 << 1;
    QTest::newRow("fits") << QString(10, u'x') << 10 << 1;
    QTest::newRow("one more") << QString(11, u'x') << 10 << 2;
    QTest::newRow("many") << QString(95, u'x') << 10 << 10;
    QTest::newRow("wide characters leave a column free") << QString(10, u'日') << 5 << 5;
}

void TestTerminalText::wrappedLines()
{
    QFETCH(QString, text);
    QFETCH(int, columns);
    QFETCH(int, expected);
    QCOMPARE(TerminalText::wrappedLines(text, columns), expected);
}

TIDEWICK_TEST_MAIN(TestTerminalText)
#include "tst_terminaltext.moc"
