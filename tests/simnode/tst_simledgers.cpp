// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "simnode/DateText.h"
#include "simnode/LedgerSchedule.h"
#include "simnode/LedgerSource.h"
#include "simnode/Recordings.h"
#include "support/Surroundings.h"

#include <QRegularExpression>
#include <QSet>

using namespace tidewick;
using namespace tidewick::sim;
using namespace std::chrono_literals;

namespace {

constexpr quint32 someIndex = 98'765'432;

WallTime time(qint64 unixSeconds)
{
    return WallTime(std::chrono::seconds(unixSeconds));
}

} // namespace

class TestSimLedgers : public QObject
{
    Q_OBJECT

private slots:
    void followFromTheIndex();
    void formAChain();
    void haveTheGivenNumberOfTransactions_data();
    void haveTheGivenNumberOfTransactions();
    void mixTypesAndResults();
    void emptyOnesHaveNoTransactionHash();

    void scheduleFollowsTheClock_data();
    void scheduleFollowsTheClock();
    void schedulesAgree();
    void scheduleContinuesAboveTheStore();
    void schedulePace();

    void dates();
};

void TestSimLedgers::followFromTheIndex()
{
    const Ledger one = LedgerSource(20, 200).ledger(someIndex);
    const Ledger same = LedgerSource(20, 200).ledger(someIndex);
    const Ledger other = LedgerSource(20, 200).ledger(someIndex + 1);
    QCOMPARE(same.hash, one.hash);
    QCOMPARE(same.transactionHash, one.transactionHash);
    QCOMPARE(same.transactions.size(), one.transactions.size());
    for (std::size_t i = 0; i < one.transactions.size(); ++i) {
        QCOMPARE(same.transactions[i].hash, one.transactions[i].hash);
        QCOMPARE(same.transactions[i].recording, one.transactions[i].recording);
        QCOMPARE(same.transactions[i].sequence, one.transactions[i].sequence);
    }
    QVERIFY(other.hash != one.hash);
    QVERIFY(other.accountHash != one.accountHash);
    QVERIFY(other.totalCoins.toLongLong() < one.totalCoins.toLongLong());
}

void TestSimLedgers::formAChain()
{
    static const QRegularExpression hash(QStringLiteral("^[0-9A-F]{64}$"));
    const LedgerSource source(20, 200);
    QSet<QString> hashes;
    for (quint32 index = someIndex; index < someIndex + 50; ++index) {
        const Ledger ledger = source.ledger(index);
        QCOMPARE(source.ledger(index + 1).parentHash, ledger.hash);
        QVERIFY(hash.match(ledger.hash).hasMatch());
        hashes.insert(ledger.hash);
        for (const LedgerTransaction &transaction : ledger.transactions) {
            QVERIFY(hash.match(transaction.hash).hasMatch());
            hashes.insert(transaction.hash);
        }
        hashes.insert(ledger.transactionHash);
    }
    QVERIFY(hashes.size() > 1000); // nearly all of them are different
}

void TestSimLedgers::haveTheGivenNumberOfTransactions_data()
{
    QTest::addColumn<int>("least");
    QTest::addColumn<int>("most");
    QTest::newRow("usual") << 20 << 200;
    QTest::newRow("none or one") << 0 << 1;
    QTest::newRow("none") << 0 << 0;
    QTest::newRow("always five") << 5 << 5;
}

void TestSimLedgers::haveTheGivenNumberOfTransactions()
{
    QFETCH(int, least);
    QFETCH(int, most);
    const LedgerSource source(least, most);
    QSet<int> counts;
    for (quint32 index = someIndex; index < someIndex + 300; ++index) {
        const auto count = static_cast<int>(source.ledger(index).transactions.size());
        QVERIFY(count >= least && count <= most);
        counts.insert(count);
    }
    QVERIFY(counts.size() > (most - least) / 2);
}

void TestSimLedgers::mixTypesAndResults()
{
    QSet<QString> types;
    QSet<QString> results;
    for (quint32 index = someIndex; index < someIndex + 10; ++index) {
        for (const LedgerTransaction &transaction :
             LedgerSource(20, 200).ledger(index).transactions) {
            const QJsonObject &recorded =
                Recordings::transactions().at(transaction.recording).classic;
            types.insert(recorded[u"transaction"][u"TransactionType"].toString());
            results.insert(recorded[u"engine_result"].toString());
        }
    }
    QVERIFY(types.size() >= 10);
    QVERIFY(types.contains(QStringLiteral("Payment")));
    QVERIFY(types.contains(QStringLiteral("OfferCreate")));
    QVERIFY(results.size() >= 3);
    QVERIFY(results.contains(QStringLiteral("tesSUCCESS")));
}

void TestSimLedgers::emptyOnesHaveNoTransactionHash()
{
    QCOMPARE(LedgerSource(0, 0).ledger(someIndex).transactionHash, QString(64, u'0'));
}

void TestSimLedgers::scheduleFollowsTheClock_data()
{
    QTest::addColumn<qint64>("now");
    QTest::addColumn<quint32>("index");
    QTest::newRow("base") << 1'793'491'200LL << 98'700'000U;
    QTest::newRow("3 s later") << 1'793'491'203LL << 98'700'000U;
    QTest::newRow("4 s later") << 1'793'491'204LL << 98'700'001U;
    QTest::newRow("an hour later") << 1'793'494'800LL << 98'700'900U;
    QTest::newRow("a second earlier") << 1'793'491'199LL << 98'699'999U;
    QTest::newRow("2020") << 1'577'836'800LL << 44'786'400U;
    QTest::newRow("1970") << 0LL << 1'000'000U;
    QTest::newRow("2150") << 5'680'281'600LL << 900'000'000U;
}

void TestSimLedgers::scheduleFollowsTheClock()
{
    QFETCH(qint64, now);
    QFETCH(quint32, index);
    QCOMPARE(LedgerSchedule(time(now), 4s, std::nullopt).firstIndex(), index);
}

void TestSimLedgers::schedulesAgree()
{
    const LedgerSchedule one(time(1'795'204'061), 4s, std::nullopt);
    const LedgerSchedule later(time(1'795'205'000), 4s, std::nullopt);
    QVERIFY(later.firstIndex() > one.firstIndex());
    for (quint32 index = one.firstIndex(); index < later.firstIndex(); ++index)
        QCOMPARE(one.closeOf(index), later.closeOf(index));
    QVERIFY(one.closeOf(one.firstIndex()) <= time(1'795'204'061));
    QVERIFY(one.closeOf(one.firstIndex() + 1) > time(1'795'204'061));
}

void TestSimLedgers::scheduleContinuesAboveTheStore()
{
    const WallTime now = time(1'793'491'202);
    QCOMPARE(LedgerSchedule(now, 4s, 98'000'000).firstIndex(), 98'700'000U);
    QCOMPARE(LedgerSchedule(now, 4s, 98'700'000).firstIndex(), 98'700'001U);
    const LedgerSchedule above(now, 4s, 99'000'000);
    QCOMPARE(above.firstIndex(), 99'000'001U);
    QCOMPARE(above.closeOf(99'000'001), now);
}

void TestSimLedgers::schedulePace()
{
    const LedgerSchedule schedule(time(1'793'491'200), Seconds(0.5), std::nullopt);
    QCOMPARE(schedule.closeOf(98'700'004), time(1'793'491'202));
    QCOMPARE(schedule.closeOf(98'699'998), time(1'793'491'199));
}

void TestSimLedgers::dates()
{
    const WallTime moment = time(1'795'204'060) + 12'345'678ns;
    QCOMPARE(DateText::human(moment, 9), QStringLiteral("2026-Nov-20 19:47:40.012345678 UTC"));
    QCOMPARE(DateText::human(moment, 6), QStringLiteral("2026-Nov-20 19:47:40.012345 UTC"));
    QCOMPARE(DateText::iso(moment), QStringLiteral("2026-11-20T19:47:40Z"));
    QCOMPARE(DateText::ledgerTime(moment), 848'519'260);
}

TIDEWICK_TEST_MAIN(TestSimLedgers)
#include "tst_simledgers.moc"
