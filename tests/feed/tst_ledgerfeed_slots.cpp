// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "Messages.h"
#include "support/ScriptedStream.h"
#include "support/Surroundings.h"

#include <functional>

using namespace tidewick;
using namespace std::chrono_literals;

/// Tests what slots connected to the feed may do to it while they are called.
class TestLedgerFeedSlots : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void stopsInsideASlot_data();
    void stopsInsideASlot();
    void restartsInsideASlot();
    void destroyedInAQueuedCall();

private:
    void happen(const QString &what);

    std::unique_ptr<ScriptedStream> m_stream;
    std::unique_ptr<LedgerFeed> m_feed;
};

void TestLedgerFeedSlots::init()
{
    m_feed.reset();
    m_stream = std::make_unique<ScriptedStream>();
    m_feed = std::make_unique<LedgerFeed>(m_stream->host());
}

void TestLedgerFeedSlots::stopsInsideASlot_data()
{
    using Connect = std::function<void(LedgerFeed *, const std::function<void()> &)>;
    QTest::addColumn<Connect>("connectTo");
    QTest::addColumn<QString>("what");
    const auto to = [](auto signal) {
        return Connect([signal](LedgerFeed *feed, const std::function<void()> &slot) {
            connect(feed, signal, feed, slot);
        });
    };
    QTest::newRow("connected") << to(&LedgerFeed::connectedChanged) << QStringLiteral("message");
    QTest::newRow("failed") << to(&LedgerFeed::connectedChanged) << QStringLiteral("failure");
    QTest::newRow("closed") << to(&LedgerFeed::ledgersChanged) << QStringLiteral("close");
    QTest::newRow("backfilled") << to(&LedgerFeed::ledgersChanged) << QStringLiteral("backfill");
    QTest::newRow("types") << to(&LedgerFeed::typesChanged) << QStringLiteral("close");
    QTest::newRow("flushed") << to(&LedgerFeed::txsChanged) << QStringLiteral("transaction");
}

void TestLedgerFeedSlots::stopsInsideASlot()
{
    using Connect = std::function<void(LedgerFeed *, const std::function<void()> &)>;
    QFETCH(Connect, connectTo);
    QFETCH(QString, what);
    m_feed->start();
    m_stream->transact(QStringLiteral("A"), QStringLiteral("Payment"), 9);
    if (what == u"message") { // makes the next message the first of its connection
        m_stream->fail();
        m_stream->clock().advance(3s);
    }
    int calls = 0;
    connectTo(m_feed.get(), [&] {
        ++calls;
        m_feed->stop();
    });
    const int connections = m_stream->connections();
    happen(what);
    QVERIFY(calls > 0);
    QVERIFY(!m_feed->running());
    QVERIFY(!m_feed->connected());
    QCOMPARE(m_stream->clock().alarms(), 0U);
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    QVERIFY(!m_stream->isOpen());
    m_stream->clock().advance(10s);
    QCOMPARE(m_stream->connections(), connections);
    m_feed->start();
    QCOMPARE(m_stream->connections(), connections + 1);
}

/// The response to the subscription on the old connection does not count for the new one.
void TestLedgerFeedSlots::restartsInsideASlot()
{
    m_feed->start();
    connect(m_feed.get(), &LedgerFeed::connectedChanged, m_feed.get(), [&] {
        if (m_feed->connected() && m_stream->connections() == 1) {
            m_feed->stop();
            m_feed->start();
        }
    });
    m_stream->say(subscribedText(100));
    QCOMPARE(m_stream->connections(), 2);
    QVERIFY(!m_feed->connected());
    QCOMPARE(m_stream->sent(), QStringList(subscriptionText()));
    m_stream->say(subscribedText(100));
    QCOMPARE(m_stream->sent().size(), 60);
}

void TestLedgerFeedSlots::destroyedInAQueuedCall()
{
    m_feed->start();
    const auto go = [this] { m_feed.reset(); };
    connect(m_feed.get(), &LedgerFeed::ledgersChanged, this, go, Qt::QueuedConnection);
    m_stream->close(7, 1, 100);
    m_stream->transact(QStringLiteral("A"), QStringLiteral("Payment"), 7);
    QVERIFY(m_feed);
    QTRY_VERIFY(!m_feed);
    QVERIFY(!m_stream->isOpen());
    QVERIFY(!m_stream->wentAway());
    QCOMPARE(m_stream->clock().alarms(), 0U);
}

void TestLedgerFeedSlots::happen(const QString &what)
{
    if (what == u"message") {
        m_stream->say(subscribedText(100));
    } else if (what == u"failure") {
        m_stream->fail();
    } else if (what == u"close") {
        m_stream->close(9, 1, 200);
    } else if (what == u"backfill") {
        m_stream->say(QStringLiteral(R"({"id":1001,"result":{"ledger":{"ledger_index":"6",)"
                                     R"("close_time":90,"transactions":[]}}})"));
    } else {
        m_stream->transact(QStringLiteral("B"), QStringLiteral("Payment"), 9);
        m_stream->clock().advance(400ms);
    }
}

TIDEWICK_TEST_MAIN(TestLedgerFeedSlots)
#include "tst_ledgerfeed_slots.moc"
