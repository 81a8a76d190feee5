// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "platform/text/Utf8.h"
#include "support/Surroundings.h"

using namespace tidewick;

class TestUtf8 : public QObject
{
    Q_OBJECT

private slots:
    void decodeLossy_data();
    void decodeLossy();
    void decode_data();
    void decode();
    void agreesWithQtOnValidText();
};

void TestUtf8::decodeLossy_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QString>("text");
    const auto row = [](const char *name, const QByteArray &bytes, const char16_t *text) {
        QTest::newRow(name) << bytes << QStringView(text).toString();
    };
    row("empty", "", u"");
    row("plain", "abc\n", u"abc\n");
    row("two, three, four bytes", "é–😀", u"é–😀");
    row("mark is kept", "\xEF\xBB\xBFx", u"\xFEFFx");
    row("cut in three",
        "\xE2\x82"
        "A",
        u"\xFFFD"
        u"A");
    row("cut in four",
        "\xF0\x9F\x98"
        "A",
        u"\xFFFD"
        u"A");
    row("cut at the end", "A\xF0\x9F", u"A\xFFFD");
    row("lone continuation",
        "\x80"
        "A",
        u"\xFFFD"
        u"A");
    row("two continuations", "\x80\xBF", u"\xFFFD\xFFFD");
    row("overlong slash", "\xC0\xAF", u"\xFFFD\xFFFD");
    row("overlong in three", "\xE0\x80\xAF", u"\xFFFD\xFFFD\xFFFD");
    row("surrogate", "\xED\xA0\x80", u"\xFFFD\xFFFD\xFFFD");
    row("beyond the last", "\xF4\x90\x80\x80", u"\xFFFD\xFFFD\xFFFD\xFFFD");
    row("never a lead", "\xFE\xFF", u"\xFFFD\xFFFD");
    row("lead after lead", "\xE2\xE2\x82\xAC", u"\xFFFD€");
    QTest::newRow("NUL") << QByteArray("a\0b", 3) << QStringView(u"a\0b", 3).toString();
}

void TestUtf8::decode_data()
{
    decodeLossy_data();
}

/// In strict mode, a text is decoded entirely or not at all.
void TestUtf8::decode()
{
    QFETCH(QByteArray, bytes);
    QFETCH(QString, text);
    const auto decoded = Utf8::decode(bytes);
    QCOMPARE(decoded.has_value(), !text.contains(QChar::ReplacementCharacter));
    QCOMPARE(decoded.value_or(text), text);
}

void TestUtf8::decodeLossy()
{
    QFETCH(QByteArray, bytes);
    QFETCH(QString, text);
    QCOMPARE(Utf8::decodeLossy(bytes), text);
}

void TestUtf8::agreesWithQtOnValidText()
{
    for (char32_t character = 0; character <= 0x10FFFF; ++character) {
        if (QChar::isSurrogate(character) || character == 0xFEFF)
            continue;
        QString text;
        text += QChar::fromUcs4(character);
        if (Utf8::decodeLossy(text.toUtf8()) != text)
            QFAIL(qPrintable(QString::number(character, 16)));
    }
}

TIDEWICK_TEST_MAIN(TestUtf8)
#include "tst_utf8.moc"
