// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "Messages.h"
#include "feed/PlainReading.h"
#include "support/Surroundings.h"

#include <QRandomGenerator>
#include <QRegularExpression>

using namespace tidewick;

namespace {

constexpr int mutations = 20000;

const QByteArrayList pieces{
    "0",
    "-1",
    "12.0",
    "12.5",
    "1e3",
    "1E+3",
    "-0",
    "-0.0",
    "1.",
    ".5",
    "01",
    "+1",
    "1e999",
    "1e-5",
    "true",
    "null",
    "[]",
    "{}",
    "NaN",
    "\"\"",
    "\"7\"",
    "{",
    "]",
    ",",
    ":",
    "\"",
    "\\",
    "\\u0000",
    "\\ud83c",
    "\\udf0a",
    "\\e",
    "\t",
    "\x01",
    "\x7f",
    "\xef\xbb\xbf",
    "\xff",
    "/**/",
    "\xe2\x82",
    "1000",
    "1",
    "999",
    "\xf0\x9f\x8c\x8a",
    "1e18",
    "9.3e18",
    "-9.3e18",
    "\"id\":1,",
    "9007199254740993",
    "9223372036854775807",
    "-9223372036854775808",
    "9223372036854775808",
    "18446744073709551615",
    "18446744073709551616",
    "-9223372036854775809",
    "123456789012345678901234567890",
};

const QByteArrayList extraMembers{
    "\"id\":1,",           "\"id\":1001,",
    "\"result\":{},",      "\"type\":\"x\",",
    "\"hash\":\"AB\",",    "\"hash\":7,",
    "\"tx_json\":null,",   "\"tx_json\":{},",
    "\"ledger_index\":8,", "\"ledger_index\":\"8\",",
    "\"close_time\":1,",   "\"transactions\":[1,2],",
};

/// Mutates texts at random, but reproducibly.
class Mutator
{
public:
    QByteArray mutated(QByteArray text)
    {
        for (quint32 left = below(3) + 1; left > 0; --left)
            mutateOnce(text);
        return text;
    }

    quint32 below(qsizetype limit) { return m_random.bounded(quint32(qMax<qsizetype>(limit, 1))); }

private:
    void mutateOnce(QByteArray &text)
    {
        const qsizetype at = below(text.size());
        switch (below(7)) {
        case 0:
            text[at] = char(text.at(at) ^ char(1U << below(8)));
            break;
        case 1:
            text.truncate(at + 1);
            break;
        case 2:
            text.insert(at, pieces.at(below(pieces.size())));
            break;
        case 3:
            text.remove(at, 1 + below(8));
            break;
        case 4:
            changeNumber(text, at);
            break;
        case 5:
            text.insert(text.indexOf('{', at) + 1, extraMembers.at(below(extraMembers.size())));
            break;
        default:
            text.insert(at, text.mid(below(text.size()), 1 + below(40)));
        }
        text.append(text.isEmpty() ? "{" : "");
    }

    void changeNumber(QByteArray &text, qsizetype from)
    {
        const auto isPart = [&](qsizetype i) {
            return i < text.size()
                   && ((text.at(i) >= '0' && text.at(i) <= '9') || text.at(i) == '.');
        };
        qsizetype begin = text.indexOf(':', from) + 1;
        while (begin < text.size() && !isPart(begin))
            ++begin;
        qsizetype end = begin;
        while (isPart(end))
            ++end;
        text.replace(begin, end - begin, pieces.at(below(pieces.size())));
    }

    QRandomGenerator m_random{20000101};
};

} // namespace

/// Checks that the reader agrees with a plain reading by Qt, whatever the text.
class TestStreamReaderMutations : public QObject
{
    Q_OBJECT

private slots:
    void agreesWithThePlainReading();
    void tinyNumbers();
};

void TestStreamReaderMutations::agreesWithThePlainReading()
{
    const QStringList recorded =
        recordedTexts("stream.jsonl") + recordedTexts("stream-tx_json.jsonl");
    const QRegularExpression tinyNumber(QStringLiteral("[eE]-[0-9]{3}"));
    Mutator mutator;
    StreamReader reader;
    int accepted = 0;
    int telling = 0;
    for (int i = 0; i < mutations; ++i) {
        const QByteArray original = recorded.at(mutator.below(recorded.size())).toUtf8();
        const QString text = QString::fromUtf8(mutator.mutated(original));
        const PlainReading plain = PlainReading::of(text);
        const QString says = described(reader.read(text));
        const bool tiny = !plain.accepted && text.contains(tinyNumber);
        QVERIFY2(says == plain.says || tiny, qPrintable(says + u'\n' + plain.says + u'\n' + text));
        accepted += plain.accepted ? 1 : 0;
        telling += says == described({}) ? 0 : 1;
    }
    // The mutations are neither all harmless nor all fatal.
    QVERIFY2(accepted > mutations / 10 && accepted < mutations * 9 / 10,
             qPrintable(QString::number(accepted)));
    QVERIFY2(telling > mutations / 10, qPrintable(QString::number(telling)));
}

/// The only kind that Qt rejects: numbers between zero and the smallest representable one.
void TestStreamReaderMutations::tinyNumbers()
{
    const QString text = json("{'type':'transaction','hash':'A','ledger_index':1e-999}");
    QVERIFY(!PlainReading::of(text).accepted);
    QCOMPARE(said(text), QStringLiteral("transaction|A|Unknown|||0"));
}

TIDEWICK_TEST_MAIN(TestStreamReaderMutations)
#include "tst_streamreader_mutations.moc"
