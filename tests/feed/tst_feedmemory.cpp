// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "Messages.h"
#include "support/PeakMemory.h"
#include "support/ScriptedStream.h"
#include "support/Surroundings.h"

using namespace tidewick;
using namespace std::chrono_literals;

namespace {

constexpr qint64 MiB = 1024LL * 1024;
constexpr qsizetype largest = 16 * MiB;

/// The types listed by name, plus one entry for the rest.
constexpr auto mostListed = qsizetype(TypesByLedger::mostTypes) + 1;

qint64 sumOf(const QList<TypesByLedger::TypeCount> &totals)
{
    qint64 sum = 0;
    for (const TypesByLedger::TypeCount &type : totals)
        sum += type.count;
    return sum;
}

/// A message of the maximum size, filled with repetitions of these bytes.
QString filled(const char *before, const char *filling, const char *after)
{
    QByteArray text = json(before).toUtf8();
    const QByteArray piece = json(filling).toUtf8();
    const QByteArray end = json(after).toUtf8();
    text += piece.repeated((largest - text.size() - end.size()) / piece.size());
    return QString::fromUtf8(text + end);
}

} // namespace

/// Checks that nothing accumulates from a stream of nonsense.
class TestFeedMemory : public QObject
{
    Q_OBJECT

private slots:
    void talliesOfManyLedgers();
    void talliesOfManyTypes();
    void talliesOfManyTypesInManyLedgers();
    void feedWithoutCloses();
    void feedWithManyTypes();
    void feedAtAllLimits();
    void largeMessages_data();
    void largeMessages();
};

void TestFeedMemory::talliesOfManyLedgers()
{
    TypesByLedger tallies;
    for (qint64 i = 0; i < 100'000; ++i)
        tallies.add(i, QString::number(i));
    QCOMPARE(tallies.size(), TypesByLedger::mostLedgers);
    QCOMPARE(sumOf(tallies.totals()), qint64(TypesByLedger::mostLedgers));
    // Known ledgers are still counted.
    tallies.add(5, QStringLiteral("5"));
    QCOMPARE(tallies.totals().first(), (TypesByLedger::TypeCount{QStringLiteral("5"), 2}));
    tallies.keepIf([](qint64 ledger) { return ledger == 5; });
    QCOMPARE(tallies.size(), 1U);
    tallies.add(200'000, QStringLiteral("new"));
    QCOMPARE(tallies.size(), 2U);
}

void TestFeedMemory::talliesOfManyTypes()
{
    TypesByLedger tallies;
    for (int i = 0; i < 100'000; ++i)
        tallies.add(7, QString::number(i));
    const auto totals = tallies.totals();
    QCOMPARE(totals.size(), mostListed);
    QCOMPARE(sumOf(totals), 100'000);
    QCOMPARE(totals.first().type, QStringLiteral("Unknown"));
}

/// The totals are computed whenever a ledger closes, which must not take long.
void TestFeedMemory::talliesOfManyTypesInManyLedgers()
{
    TypesByLedger tallies;
    for (qint64 ledger = 0; ledger < 60; ++ledger) {
        for (int i = 0; i < 200; ++i)
            tallies.add(ledger, QStringLiteral("%1/%2").arg(ledger).arg(i));
    }
    QCOMPARE(tallies.totals().size(), mostListed);
    QCOMPARE(sumOf(tallies.totals()), 60 * 200);
    tallies.keepIf([](qint64 ledger) { return ledger == 59; });
    QCOMPARE(tallies.totals(), (QList<TypesByLedger::TypeCount>{{QStringLiteral("Unknown"), 200}}));
    // Room for new types is available again.
    tallies.add(60, QStringLiteral("Payment"));
    QCOMPARE(tallies.totals().last(), (TypesByLedger::TypeCount{QStringLiteral("Payment"), 1}));
    tallies.keepIf([](qint64) { return false; });
    QVERIFY(tallies.totals().isEmpty());
}

void TestFeedMemory::feedWithoutCloses()
{
    const ScriptedStream stream;
    LedgerFeed feed(stream.host());
    feed.start();
    const PeakMemory memory;
    const QString type = QString(100, u'x') + QStringLiteral("%1");
    for (qint64 i = 0; i < 200'000; ++i)
        stream.transact(QStringLiteral("A"), type.arg(i), i);
    QVERIFY(memory.isBelow(4 * MiB));
    QCOMPARE(stream.clock().alarms(), 1U);
    stream.clock().advance(400ms);
    QCOMPARE(feed.txs().size(), 40);
    stream.close(3, 1, 100);
    QCOMPARE(feed.types(), (QList<LedgerFeed::TypeCount>{{type.arg(3), 1}}));
    // The tallies have room again.
    stream.transact(QStringLiteral("A"), QStringLiteral("Payment"), 1'000'000);
    stream.close(1'000'000, 1, 104);
    QCOMPARE(feed.types().size(), 2);
}

void TestFeedMemory::feedWithManyTypes()
{
    const ScriptedStream stream;
    LedgerFeed feed(stream.host());
    feed.start();
    stream.close(7, 1, 100);
    for (int i = 0; i < 50'000; ++i)
        stream.transact(QStringLiteral("A"), QString::number(i), 7);
    stream.close(8, 1, 104);
    QCOMPARE(feed.types().size(), mostListed);
    QCOMPARE(sumOf(feed.types()), 50'000);
}

/// Every list and tally at its limit.
void TestFeedMemory::feedAtAllLimits()
{
    const ScriptedStream stream;
    LedgerFeed feed(stream.host());
    feed.start();
    const PeakMemory memory;
    const QString text = QString(110, u'x') + QStringLiteral("%1");
    for (qint64 ledger = 0; ledger < 300; ++ledger) {
        stream.close(ledger, 1, ledger);
        for (qint64 i = 0; i < 200; ++i) {
            const QString unique = text.arg(200 * ledger + i);
            stream.transact(unique, unique, ledger, unique, unique);
        }
        stream.clock().advance(400ms);
    }
    QCOMPARE(feed.ledgers().size(), 60);
    QCOMPARE(feed.txs().size(), 40);
    // Each ledger's transactions come after its close, so those of the latest ledger do not count
    // yet.
    QCOMPARE(sumOf(feed.types()), 59 * 200);
    QVERIFY(memory.isBelow(32 * MiB));
}

void TestFeedMemory::largeMessages_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<bool>("read");
    const auto row = [](const char *name, const QString &text, bool read) {
        QTest::newRow(name) << text << read;
    };
    const char *begin = "{'type':'transaction','hash':'A','x':[";
    row("a long text", filled("{'type':'transaction','hash':'A','x':'", "x", "'}"), true);
    row("a long hash", filled("{'type':'transaction','hash':'", "x", "'}"), false);
    row("numbers", filled(begin, "1,", "1]}"), true);
    row("numbers beyond 64 bits", filled(begin, "18446744073709551616,", "1]}"), true);
    row("one number beyond 64 bits", filled(begin, "1,", "18446744073709551616]}"), true);
    row("objects", filled(begin, "{},", "1]}"), true);
    row("members", filled("{'type':'transaction','hash':'A',", "'hash':'B',", "'x':1}"), true);
    row("objects, then one number beyond 64 bits",
        filled(begin, "{'a':'b'},", "18446744073709551616]}"), true);
    row("lone surrogates", filled("{'type':'transaction','hash':'A','x':'", "\\ud83c", "'}"), true);
    row("open brackets", QString(largest, u'['), false);
    row("open brackets in numbers", filled(begin, "1,[", ""), false);
    row("quotes", QString(largest, u'"'), false);
    row("backslashes", QString(largest, u'\\'), false);
    row("NUL", QString(largest, QChar(0)), false);
    row("three bytes each", QString(largest / 3, u'\u20ac'), false);
    row("truncated", filled(begin, "1,", ""), false);
}

void TestFeedMemory::largeMessages()
{
    QFETCH(QString, text);
    QFETCH(bool, read);
    QVERIFY(text.toUtf8().size() <= largest);
    const ScriptedStream stream;
    LedgerFeed feed(stream.host());
    feed.start();
    const PeakMemory memory;
    for (int i = 1; i <= (PeakMemory::hasSanitizer ? 1 : 3); ++i) {
        stream.say(text);
        stream.clock().advance(400ms);
        QCOMPARE(feed.txs().size(), read ? i : 0);
    }
    QVERIFY(memory.isBelow(512 * MiB));
}

TIDEWICK_TEST_MAIN(TestFeedMemory)
#include "tst_feedmemory.moc"
