// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "platform/text/DisplayText.h"
#include "support/Surroundings.h"

using namespace tidewick;

class TestDisplayText : public QObject
{
    Q_OBJECT

private slots:
    void singleLine_data();
    void singleLine();
    void elided_data();
    void elided();
    void elidesHugeTexts();
};

void TestDisplayText::singleLine_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("expected");
    const auto row = [](const char *name, const QString &text, const QString &expected) {
        QTest::newRow(name) << text << expected;
    };
    row("empty", {}, {});
    row("plain", QStringLiteral("Following mainnet"), QStringLiteral("Following mainnet"));
    row("line breaks", QStringLiteral("a\nb\r\nc\u2028d\u2029e\u0085f"),
        QStringLiteral("a b  c d e f"));
    row("terminal codes", QStringLiteral("\x1b[2Jx\x07\x7f\u009b"), QStringLiteral(" [2Jx   "));
    row("nul", QStringLiteral("a") + QChar(u'\0') + u'b', QStringLiteral("a b"));
    row("markup stays", QStringLiteral("<b>&amp;_</b>"), QStringLiteral("<b>&amp;_</b>"));
    row("bidirectional controls", QStringLiteral("a\u202eb\u2066c\u2069\u202c"),
        QStringLiteral("abc"));
    row("right to left text stays", QStringLiteral("שלום\u200f"), QStringLiteral("שלום\u200f"));
    row("emoji with joiners stay", QStringLiteral("👩‍🚀"), QStringLiteral("👩‍🚀"));
}

void TestDisplayText::singleLine()
{
    QFETCH(QString, text);
    QFETCH(QString, expected);
    QCOMPARE(DisplayText::singleLine(text), expected);
}

void TestDisplayText::elided_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<qsizetype>("limit");
    QTest::addColumn<QString>("expected");
    const auto row = [](const char *name, const QString &text, qsizetype limit,
                        const QString &expected) {
        QTest::newRow(name) << text << limit << expected;
    };
    row("empty", {}, 4, {});
    row("shorter", QStringLiteral("abc"), 4, QStringLiteral("abc"));
    row("just as long", QStringLiteral("abcd"), 4, QStringLiteral("abcd"));
    row("longer", QStringLiteral("abcde"), 4, QStringLiteral("abc…"));
    row("one left", QStringLiteral("abcde"), 1, QStringLiteral("…"));
    row("surrogate pairs count once", QStringLiteral("𝄞𝄞𝄞𝄞"), 4, QStringLiteral("𝄞𝄞𝄞𝄞"));
    row("surrogate pairs are not cut", QStringLiteral("𝄞𝄞𝄞𝄞𝄞"), 4, QStringLiteral("𝄞𝄞𝄞…"));
    row("combined characters are not cut", QStringLiteral("👩‍🚀👩‍🚀👩‍🚀"), 2,
        QStringLiteral("👩‍🚀…"));
    row("stacked marks", u'a' + QString(1000, u'\u0301') + u'b', 4, QStringLiteral("…"));
}

void TestDisplayText::elided()
{
    QFETCH(QString, text);
    QFETCH(qsizetype, limit);
    QFETCH(QString, expected);
    QCOMPARE(DisplayText::elided(text, limit), expected);
}

void TestDisplayText::elidesHugeTexts()
{
    const QString huge(1 << 20, u'x');
    QCOMPARE(DisplayText::elided(huge, 120), QString(119, u'x') + u'…');
}

TIDEWICK_TEST_MAIN(TestDisplayText)
#include "tst_displaytext.moc"
