// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "Messages.h"
#include "feed/PlainReading.h"
#include "support/Surroundings.h"

using namespace tidewick;

/// Tests texts in messages, and messages that are barely JSON.
class TestStreamReaderTexts : public QObject
{
    Q_OBJECT

private slots:
    void texts_data();
    void texts();
    void longTexts();
    void malformed_data();
    void malformed();
    void depth();
    void continuesAfterBadMessages();
};

void TestStreamReaderTexts::texts_data()
{
    QTest::addColumn<QString>("raw");
    QTest::addColumn<QString>("hash");
    const auto row = [](const char *name, const QString &raw, const QString &hash) {
        QTest::newRow(name) << raw << hash;
    };
    row("plain", QStringLiteral("A"), QStringLiteral("A"));
    row("NUL", QStringLiteral("A\\u0000B"), QStringLiteral("A") + QChar(0) + u'B');
    row("beyond the BMP", QStringLiteral("\U0001F30A"), QStringLiteral("\U0001F30A"));
    row("surrogate pair", QStringLiteral("\\ud83c\\udf0a"), QStringLiteral("\U0001F30A"));
    row("markup", QStringLiteral("<b>&amp;"), QStringLiteral("<b>&amp;"));
    row("escapes", QStringLiteral("\\\"\\\\\\/\\b\\f\\n\\r\\t"), QStringLiteral("\"\\/\b\f\n\r\t"));
    row("raw control characters", QStringLiteral("A\t\u0001\nB"), QStringLiteral("A\t\u0001\nB"));
    row("raw delete character", QStringLiteral("A\u007fB"), QStringLiteral("A\u007fB"));
    row("lone surrogate in UTF-16", QStringLiteral("A") + QChar(0xD83C) + u'B',
        QStringLiteral("A\ufffdB"));
    row("unknown escape", QStringLiteral("A\\eB"), QStringLiteral("AeB"));
}

void TestStreamReaderTexts::texts()
{
    QFETCH(QString, raw);
    QFETCH(QString, hash);
    QCOMPARE(said(json("{'type':'transaction','hash':'%1'}").arg(raw)),
             QStringLiteral("transaction|%1|Unknown|||0").arg(hash));
}

/// The limit is in bytes of UTF-8. A longer text is treated as absent.
void TestStreamReaderTexts::longTexts()
{
    const QString longest(128, u'x');
    const QString text = json("{'type':'transaction','hash':'%1','engine_result':'%2',"
                              "'tx_json':{'hash':'B','TransactionType':'%3','Account':'%4'}}");
    QCOMPARE(said(text.arg(longest, longest, longest, longest)),
             QStringLiteral("transaction|%1|%1|%1|%1|0").arg(longest));
    const QString longer(43, u'\u20ac');
    QCOMPARE(said(text.arg(longer, longer, longer, longer)),
             QStringLiteral("transaction|B|Unknown|||0"));
    QCOMPARE(said(json("{'type':'transaction','hash':'%1'}").arg(longer)),
             QStringLiteral("nothing"));
}

void TestStreamReaderTexts::malformed_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<bool>("read");
    const QString whole = json("{'type':'transaction','hash':'A'}");
    const auto row = [](const char *name, const QString &text, bool read = false) {
        QTest::newRow(name) << text << read;
    };
    row("whole", whole, true);
    row("surrounding whitespace", QStringLiteral(" \t\r\n") + whole + QStringLiteral(" \t\r\n"),
        true);
    row("byte order mark", QChar(0xFEFF) + whole, true);
    row("two byte order marks", QString(2, QChar(0xFEFF)) + whole);
    row("empty", {});
    row("whitespace", QStringLiteral(" \n"));
    row("a number", QStringLiteral("3"));
    row("a text", json("'transaction'"));
    row("an array", u'[' + whole + u']');
    row("null", QStringLiteral("null"));
    row("trailing character", whole + u'x');
    row("two objects", whole + whole);
    row("trailing NUL", whole + QChar(0));
    row("truncated", whole.chopped(1));
    row("trailing comma", json("{'type':'transaction','hash':'A',}"));
    row("comment", json("{'type':'transaction',/**/'hash':'A'}"));
    row("unquoted names", QStringLiteral("{type:\"transaction\",hash:\"A\"}"));
    row("leading zero", json("{'type':'transaction','hash':'A','x':01}"));
    row("not-a-number", json("{'type':'transaction','hash':'A','x':NaN}"));
    row("number too large", json("{'type':'transaction','hash':'A','x':1e999}"));
    row("number ends in a decimal point", json("{'type':'transaction','hash':'A','x':1.}"), true);
    row("number of 400 digits",
        json("{'type':'transaction','hash':'A','x':%1}").arg(QString(400, u'9')));
    row("number of 200 digits",
        json("{'type':'transaction','hash':'A','x':%1}").arg(QString(200, u'9')), true);
    row("bad escape", json("{'type':'transaction','hash':'A','x':'\\u12G4'}"));
    row("lone high surrogate", json("{'type':'transaction','hash':'A','x':'\\ud83c'}"), true);
    row("lone low surrogate", json("{'type':'transaction','hash':'A','x':'\\udf0a'}"), true);
    row("lone surrogate in a name", json("{'type':'transaction','hash':'A','\\ud83c':1}"), true);
}

void TestStreamReaderTexts::malformed()
{
    QFETCH(QString, text);
    QFETCH(bool, read);
    QCOMPARE(said(text),
             read ? QStringLiteral("transaction|A|Unknown|||0") : QStringLiteral("nothing"));
}

void TestStreamReaderTexts::depth()
{
    const auto nested = [](qsizetype depth) {
        const QString text = json("{'type':'transaction','hash':'A','x':%1%2}");
        return said(text.arg(QString(depth - 1, u'['), QString(depth - 1, u']')));
    };
    QCOMPARE(nested(1024), QStringLiteral("transaction|A|Unknown|||0"));
    QCOMPARE(nested(1025), QStringLiteral("nothing"));
    QCOMPARE(nested(1'000'000), QStringLiteral("nothing"));
    QCOMPARE(said(QString(1'000'000, u'[')), QStringLiteral("nothing"));
    QCOMPARE(said(json("{'x':").repeated(1'000'000)), QStringLiteral("nothing"));
}

void TestStreamReaderTexts::continuesAfterBadMessages()
{
    StreamReader reader;
    const QString good = json("{'type':'transaction','hash':'A'}");
    for (const QString &bad : {QString(), QString(5'000'000, u'{'), good.chopped(1),
                               json("{'x':'%1'}").arg(QString(5'000'000, u'\u20ac'))}) {
        QCOMPARE(described(reader.read(bad)), QStringLiteral("nothing"));
        QCOMPARE(described(reader.read(good)), QStringLiteral("transaction|A|Unknown|||0"));
    }
}

TIDEWICK_TEST_MAIN(TestStreamReaderTexts)
#include "tst_streamreader_texts.moc"
