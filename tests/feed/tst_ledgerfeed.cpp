// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "Messages.h"
#include "support/ScriptedStream.h"
#include "support/Surroundings.h"

#include <QSignalSpy>

using namespace tidewick;
using namespace std::chrono_literals;

/// Tests how the feed connects, waits, and stops.
class TestLedgerFeed : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void beginsIdle();
    void subscribes();
    void startsOnce();
    void isConnectedByAMessage();
    void keepsReconnecting();
    void stopClosesTheConnection();
    void stopCancelsReconnecting();
    void stopWithoutStart();
    void startsAgain();
    void startsAgainAtOnce();
    void oldSocketsAreIgnored();
    void noAlarmWhileNothingIsPending();
    void wakesAfterSleep();
    void destroyedWhileWaiting();

private:
    std::unique_ptr<ScriptedStream> m_stream;
    std::unique_ptr<LedgerFeed> m_feed;
};

void TestLedgerFeed::init()
{
    m_feed.reset();
    m_stream = std::make_unique<ScriptedStream>();
    m_feed = std::make_unique<LedgerFeed>(m_stream->host());
}

void TestLedgerFeed::beginsIdle()
{
    QVERIFY(!m_feed->running());
    QVERIFY(!m_feed->connected());
    QVERIFY(m_feed->ledgers().isEmpty());
    QVERIFY(m_feed->txs().isEmpty());
    QVERIFY(m_feed->types().isEmpty());
    QVERIFY(!m_feed->txRate());
    QCOMPARE(m_stream->connections(), 0);
    QCOMPARE(m_stream->clock().alarms(), 0U);
}

void TestLedgerFeed::subscribes()
{
    m_feed->start();
    QVERIFY(m_feed->running());
    QCOMPARE(m_stream->connections(), 1);
    QCOMPARE(m_stream->sent(), QStringList(subscriptionText()));
    QVERIFY(!m_feed->connected());
}

void TestLedgerFeed::startsOnce()
{
    m_feed->start();
    m_feed->start();
    QCOMPARE(m_stream->connections(), 1);
    QCOMPARE(m_stream->sent(), QStringList(subscriptionText()));
    m_stream->fail();
    m_feed->start();
    QCOMPARE(m_stream->connections(), 1);
}

void TestLedgerFeed::isConnectedByAMessage()
{
    const QSignalSpy changed(m_feed.get(), &LedgerFeed::connectedChanged);
    m_feed->start();
    QCOMPARE(changed.count(), 0);
    m_stream->say(QStringLiteral("anything"));
    QVERIFY(m_feed->connected());
    m_stream->say(QStringLiteral("more"));
    QCOMPARE(changed.count(), 1);
    m_stream->fail();
    QVERIFY(!m_feed->connected());
    QCOMPARE(changed.count(), 2);
}

void TestLedgerFeed::keepsReconnecting()
{
    const QSignalSpy changed(m_feed.get(), &LedgerFeed::connectedChanged);
    m_feed->start();
    for (int attempt = 1; attempt < 200; ++attempt) {
        QCOMPARE(m_stream->connections(), attempt);
        m_stream->fail();
        QCOMPARE(m_stream->clock().alarms(), 1U);
        m_stream->clock().advance(3s - 1ns);
        QCOMPARE(m_stream->connections(), attempt);
        m_stream->clock().advance(1ns);
    }
    QCOMPARE(changed.count(), 0);
    QCOMPARE(m_stream->sent(), QStringList(subscriptionText()));
    m_stream->say(QStringLiteral("hello"));
    QVERIFY(m_feed->connected());
    QCOMPARE(m_stream->clock().alarms(), 0U);
}

void TestLedgerFeed::stopClosesTheConnection()
{
    m_feed->start();
    m_stream->say(subscribedText(100));
    m_feed->stop();
    QVERIFY(m_stream->wentAway());
    QVERIFY(!m_feed->running());
    QVERIFY(!m_feed->connected());
    m_feed->stop();
    m_stream->clock().advance(1h);
    QCOMPARE(m_stream->connections(), 1);
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    QVERIFY(!m_stream->isOpen());
}

void TestLedgerFeed::stopCancelsReconnecting()
{
    m_feed->start();
    m_stream->fail();
    m_stream->clock().advance(1s);
    m_feed->stop();
    QCOMPARE(m_stream->clock().alarms(), 0U);
    m_stream->clock().advance(1h);
    QCOMPARE(m_stream->connections(), 1);
    QVERIFY(!m_stream->wentAway());
}

void TestLedgerFeed::stopWithoutStart()
{
    const QSignalSpy changed(m_feed.get(), &LedgerFeed::connectedChanged);
    m_feed->stop();
    QVERIFY(!m_feed->running());
    QCOMPARE(changed.count(), 0);
    m_feed->start();
    QCOMPARE(m_stream->connections(), 1);
}

void TestLedgerFeed::startsAgain()
{
    m_feed->start();
    m_stream->close(7, 2, 100);
    m_stream->transact(QStringLiteral("A"), QStringLiteral("Payment"), 7);
    m_stream->clock().advance(400ms);
    m_stream->transact(QStringLiteral("B"), QStringLiteral("Payment"), 7);
    m_feed->stop();
    m_stream->clock().advance(1h);
    QCOMPARE(m_feed->ledgers().size(), 1);
    QCOMPARE(m_feed->txs().size(), 1);

    const QSignalSpy changed(m_feed.get(), &LedgerFeed::txsChanged);
    m_feed->start();
    QCOMPARE(m_stream->connections(), 2);
    QCOMPARE(m_stream->sent(), QStringList(subscriptionText()));
    QCOMPARE(m_feed->ledgers().size(), 1);
    // The pending transaction is listed at the first flush, and the tallies count both.
    m_stream->clock().advance(400ms - 1ns);
    QCOMPARE(changed.count(), 0);
    m_stream->clock().advance(1ns);
    QCOMPARE(m_feed->txs().size(), 2);
    QCOMPARE(m_feed->txs().first().id, QStringLiteral("B"));
    m_stream->close(8, 0, 104);
    QCOMPARE(m_feed->types(), (QList<LedgerFeed::TypeCount>{{QStringLiteral("Payment"), 2}}));
}

/// Restarts before the reconnect delay of three seconds has passed.
void TestLedgerFeed::startsAgainAtOnce()
{
    m_feed->start();
    m_stream->fail();
    m_stream->clock().advance(1s);
    m_feed->stop();
    m_feed->start();
    QCOMPARE(m_stream->connections(), 2);
    m_stream->clock().advance(10s);
    QCOMPARE(m_stream->connections(), 2);
}

/// The socket of a stopped feed lives until control returns to the event loop.
void TestLedgerFeed::oldSocketsAreIgnored()
{
    m_feed->start();
    m_stream->close(7, 2, 100);
    m_feed->stop();
    QVERIFY(m_stream->isOpen());
    m_stream->close(8, 2, 104);
    QVERIFY(!m_feed->connected());
    QCOMPARE(m_feed->ledgers().size(), 1);
    m_stream->fail();
    QCOMPARE(m_stream->clock().alarms(), 0U);
    m_stream->clock().advance(10s);
    QCOMPARE(m_stream->connections(), 1);
}

void TestLedgerFeed::noAlarmWhileNothingIsPending()
{
    m_feed->start();
    QCOMPARE(m_stream->clock().alarms(), 0U);
    m_stream->say(subscribedText(100));
    m_stream->close(100, 2, 100);
    QCOMPARE(m_stream->clock().alarms(), 0U);
    m_stream->transact(QStringLiteral("A"), QStringLiteral("Payment"), 100);
    m_stream->transact(QStringLiteral("B"), QStringLiteral("Payment"), 100);
    QCOMPARE(m_stream->clock().alarms(), 1U);
    m_stream->clock().advance(400ms);
    QCOMPARE(m_stream->clock().alarms(), 0U);
    m_stream->transact(QStringLiteral("C"), QStringLiteral("Payment"), 100);
    m_feed->stop();
    QCOMPARE(m_stream->clock().alarms(), 0U);
}

/// Time spent asleep counts.
void TestLedgerFeed::wakesAfterSleep()
{
    m_feed->start();
    m_stream->transact(QStringLiteral("A"), QStringLiteral("Payment"), 100);
    m_stream->fail();
    m_stream->clock().sleep(1h);
    QCOMPARE(m_stream->connections(), 2);
    QCOMPARE(m_feed->txs().size(), 1);
    m_stream->transact(QStringLiteral("B"), QStringLiteral("Payment"), 100);
    m_stream->clock().advance(400ms);
    QCOMPARE(m_feed->txs().size(), 2);
}

void TestLedgerFeed::destroyedWhileWaiting()
{
    m_feed->start();
    m_stream->transact(QStringLiteral("A"), QStringLiteral("Payment"), 100);
    m_stream->fail();
    QCOMPARE(m_stream->clock().alarms(), 2U);
    m_feed.reset();
    QCOMPARE(m_stream->clock().alarms(), 0U);
    m_stream->clock().advance(10s);
    QCOMPARE(m_stream->connections(), 1);
}

TIDEWICK_TEST_MAIN(TestLedgerFeed)
#include "tst_ledgerfeed.moc"
