// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "Messages.h"
#include "support/ScriptedStream.h"
#include "support/Surroundings.h"

#include <QSignalSpy>

#include <algorithm>
#include <limits>
#include <random>

using namespace tidewick;
using namespace std::chrono_literals;

namespace {

QString backfillRequest(qint64 id, qint64 index)
{
    return QStringLiteral(R"({"id":%1,"command":"ledger","ledger_index":%2,"transactions":true})")
        .arg(id)
        .arg(index);
}

} // namespace

/// Tests how the feed requests past ledgers and handles the responses.
class TestLedgerFeedBackfill : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void backfills();
    void backfillsOncePerConnection();
    void backfillNearTheLimits_data();
    void backfillNearTheLimits();
    void noBackfillWithoutAnIndex();
    void noBackfillWithoutASocket();
    void backfillInAnyOrder_data();
    void backfillInAnyOrder();
    void backfillBesideLiveLedgers();
    void backfillIgnoresTooOldLedgers();
    void oddIndexes();

private:
    std::unique_ptr<ScriptedStream> m_stream;
    std::unique_ptr<LedgerFeed> m_feed;
};

void TestLedgerFeedBackfill::init()
{
    m_feed.reset();
    m_stream = std::make_unique<ScriptedStream>();
    m_feed = std::make_unique<LedgerFeed>(m_stream->host());
    m_feed->start();
}

void TestLedgerFeedBackfill::backfills()
{
    m_stream->say(subscribedText(1'000'000));
    QStringList expected(subscriptionText());
    for (qint64 k = 1; k <= 59; ++k)
        expected += backfillRequest(1000 + k, 1'000'000 - k);
    QCOMPARE(m_stream->sent(), expected);
}

void TestLedgerFeedBackfill::backfillsOncePerConnection()
{
    m_stream->say(QStringLiteral(R"({"id":1,"result":{}})"));
    m_stream->say(subscribedText(100));
    m_stream->say(subscribedText(200));
    QCOMPARE(m_stream->sent().size(), 60);
    QCOMPARE(m_stream->sent().last(), backfillRequest(1059, 41));
    m_stream->fail();
    m_stream->clock().advance(3s);
    QCOMPARE(m_stream->sent(), QStringList(subscriptionText()));
    m_stream->say(subscribedText(300));
    QCOMPARE(m_stream->sent().size(), 60);
    QCOMPARE(m_stream->sent().at(1), backfillRequest(1001, 299));
}

void TestLedgerFeedBackfill::backfillNearTheLimits_data()
{
    QTest::addColumn<qint64>("below");
    QTest::addColumn<int>("requests");
    QTest::addColumn<qint64>("lowest");
    using Limits = std::numeric_limits<qint64>;
    QTest::newRow("largest") << Limits::max() << 59 << Limits::max() - 59;
    QTest::newRow("few") << qint64(10) << 59 << qint64(-49);
    QTest::newRow("negative") << qint64(-1) << 59 << qint64(-60);
    QTest::newRow("almost smallest") << Limits::min() + 59 << 59 << Limits::min();
    QTest::newRow("too small") << Limits::min() + 58 << 58 << Limits::min();
    QTest::newRow("smallest") << Limits::min() << 0 << qint64(0);
}

void TestLedgerFeedBackfill::backfillNearTheLimits()
{
    QFETCH(qint64, below);
    QFETCH(int, requests);
    QFETCH(qint64, lowest);
    m_stream->say(subscribedText(below));
    QCOMPARE(m_stream->sent().size(), 1 + requests);
    if (requests > 0)
        QCOMPARE(m_stream->sent().last(), backfillRequest(1000 + requests, lowest));
}

void TestLedgerFeedBackfill::noBackfillWithoutAnIndex()
{
    for (const char *text :
         {R"({"id":1,"result":{}})", R"({"id":1,"result":{"ledger_index":"100"}})",
          R"({"id":1,"result":{"ledger_index":9223372036854775808}})",
          R"({"id":1,"error":"slowDown"})", R"({"id":500,"result":{"ledger_index":100}})"})
        m_stream->say(QString::fromUtf8(text));
    QCOMPARE(m_stream->sent(), QStringList(subscriptionText()));
}

void TestLedgerFeedBackfill::noBackfillWithoutASocket()
{
    m_feed->stop();
    m_feed->handle(subscribedText(100));
    m_feed->start();
    m_stream->fail();
    m_feed->handle(subscribedText(100));
    m_stream->clock().advance(3s);
    m_stream->say(subscribedText(200));
    QCOMPARE(m_stream->sent().size(), 60);
}

void TestLedgerFeedBackfill::backfillInAnyOrder_data()
{
    QTest::addColumn<QList<qint64>>("order");
    QList<qint64> order = fromTo(941, 999);
    QTest::newRow("ascending") << order;
    std::reverse(order.begin(), order.end());
    QTest::newRow("descending") << order;
    std::mt19937 random(7);
    for (int i = 0; i < 5; ++i) {
        std::shuffle(order.begin(), order.end(), random);
        QTest::addRow("shuffled %d", i) << order;
    }
    QTest::newRow("twice") << order + order;
}

void TestLedgerFeedBackfill::backfillInAnyOrder()
{
    QFETCH(QList<qint64>, order);
    const QSignalSpy changed(m_feed.get(), &LedgerFeed::ledgersChanged);
    for (const qint64 index : order)
        m_stream->say(pastText(index, index - 900, 4 * index));
    QCOMPARE(indexes(*m_feed), fromTo(941, 999));
    QCOMPARE(changed.count(), 59);
    for (const LedgerFeed::Ledger &ledger : m_feed->ledgers()) {
        QCOMPARE(ledger.txns, ledger.id - 900);
        QCOMPARE(ledger.closed, ledgerTime(4.0 * double(ledger.id)));
    }
    m_stream->close(1000, 1, 4000);
    QCOMPARE(indexes(*m_feed), fromTo(941, 1000));
    m_stream->close(1001, 1, 4004);
    QCOMPARE(indexes(*m_feed), fromTo(942, 1001));
}

void TestLedgerFeedBackfill::backfillBesideLiveLedgers()
{
    m_stream->close(1000, 7, 4000);
    m_stream->say(pastText(999, 1, 3996));
    m_stream->close(1001, 7, 4004);
    m_stream->say(pastText(998, 1, 3992));
    // A ledger whose close has been seen stays unchanged.
    m_stream->say(pastText(1000, 1, 1));
    QCOMPARE(indexes(*m_feed), fromTo(998, 1001));
    QCOMPARE(m_feed->ledgers().at(2), (LedgerFeed::Ledger{1000, 7, ledgerTime(4000)}));
    QVERIFY(m_feed->types().isEmpty());
}

void TestLedgerFeedBackfill::backfillIgnoresTooOldLedgers()
{
    for (qint64 i = 0; i < 60; ++i)
        m_stream->close(1000 + i, 1, 4 * i);
    const QSignalSpy changed(m_feed.get(), &LedgerFeed::ledgersChanged);
    m_stream->say(pastText(999, 1, 0));
    QCOMPARE(indexes(*m_feed), fromTo(1000, 1059));
    QCOMPARE(changed.count(), 0);
    // A missed ledger is accepted, as it is newer than the oldest one kept.
    m_stream->close(1061, 1, 300);
    m_stream->say(pastText(1060, 1, 296));
    QCOMPARE(indexes(*m_feed), fromTo(1002, 1061));
    QCOMPARE(changed.count(), 2);
}

void TestLedgerFeedBackfill::oddIndexes()
{
    constexpr qint64 largest = std::numeric_limits<qint64>::max();
    m_stream->say(pastText(largest, 1, 0));
    m_stream->say(pastText(-1, 1, 0));
    m_stream->say(pastText(-largest - 1, 1, 0));
    m_stream->close(largest - 1, 1, 0);
    QCOMPARE(indexes(*m_feed), (QList<qint64>{-largest - 1, -1, largest, largest - 1}));
}

TIDEWICK_TEST_MAIN(TestLedgerFeedBackfill)
#include "tst_ledgerfeed_backfill.moc"
