// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "Messages.h"
#include "platform/NodePorts.h"
#include "simnode/RawClient.h"
#include "simnode/SimulatedNode.h"
#include "support/Surroundings.h"

#include <QSet>
#include <QSignalSpy>
#include <QTimer>

#include <algorithm>
#include <csignal>

using namespace tidewick;
using namespace std::chrono_literals;

namespace {

constexpr int patience = 60'000;

/// The indexes missing between the first and the last.
QList<qint64> gaps(const LedgerFeed &feed)
{
    const QList<qint64> known = indexes(feed);
    QList<qint64> missing = fromTo(known.first(), known.last());
    missing.removeIf([&](qint64 index) { return known.contains(index); });
    return missing;
}

bool isAscending(const LedgerFeed &feed)
{
    const QList<qint64> known = indexes(feed);
    return std::adjacent_find(known.begin(), known.end(), std::greater_equal<>()) == known.end();
}

} // namespace

/// Tests the feed against the simulated node, with real connections and clocks.
class TestLiveFeed : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void fillsAndContinues();
    void listsTheNodesTransactions();
    void talliesAgreeWithTheLedgers();
    void waitsForTheNode();
    void comesBackAfterTheNode_data();
    void comesBackAfterTheNode();
    void stopsAndRestarts();

private:
    void startNode();
    qint64 newest() const { return m_feed->ledgers().last().id; }

    std::unique_ptr<SimulatedNode> m_node;
    std::unique_ptr<LedgerFeed> m_feed;
};

void TestLiveFeed::init()
{
    m_node = std::make_unique<SimulatedNode>();
    m_node->configuration.replace("port = " + QByteArray::number(m_node->streamPort()),
                                  "port = " + QByteArray::number(NodePorts::webSocket));
    m_feed = std::make_unique<LedgerFeed>();
}

void TestLiveFeed::cleanup()
{
    m_feed.reset();
    m_node.reset();
}

/// Starts a node that closes a ledger every 0.2 s, and waits until its port is open.
void TestLiveFeed::startNode()
{
    m_node->start("start-delay=0 speed=20 stop-delay=0.1 state=full txns=3-9");
    QTRY_VERIFY_WITH_TIMEOUT(RawClient(NodePorts::webSocket).state() == RawClient::State::Open,
                             patience);
}

/// The ledger that is the newest one when the feed connects is not included: it is neither past nor
/// yet to close.
void TestLiveFeed::fillsAndContinues()
{
    startNode();
    m_feed->start();
    QTRY_VERIFY_WITH_TIMEOUT(m_feed->ledgers().size() >= 59, patience);
    QVERIFY(m_feed->connected());
    QTRY_COMPARE_WITH_TIMEOUT(gaps(*m_feed).size(), 1, patience);
    const qint64 missing = gaps(*m_feed).first();
    const qint64 before = newest();
    QTRY_VERIFY_WITH_TIMEOUT(newest() >= before + 5, patience);
    QCOMPARE(m_feed->ledgers().size(), 60);
    QVERIFY(isAscending(*m_feed));
    QCOMPARE(gaps(*m_feed), QList<qint64>{missing});

    const auto now = std::chrono::system_clock::now();
    for (const LedgerFeed::Ledger &ledger : m_feed->ledgers()) {
        QVERIFY(ledger.txns >= 3 && ledger.txns <= 9);
        QVERIFY(ledger.closed > now - 2h && ledger.closed < now + 1min);
    }
    QVERIFY(m_feed->txRate().value_or(0) > 0);
}

void TestLiveFeed::listsTheNodesTransactions()
{
    startNode();
    m_feed->start();
    QTRY_COMPARE_WITH_TIMEOUT(m_feed->txs().size(), 40, patience);
    QSet<QString> hashes;
    qint64 ledger = newest() + 1;
    for (const LedgerFeed::Tx &tx : m_feed->txs()) {
        QCOMPARE(tx.id.size(), 64);
        hashes.insert(tx.id);
        QVERIFY(!tx.type.isEmpty() && tx.type != u"Unknown");
        QVERIFY(tx.account.startsWith(u'r'));
        QVERIFY(tx.result.startsWith(u"te"));
        // Newest first, and each belongs to a ledger in the list.
        QVERIFY(tx.ledger <= ledger);
        QVERIFY(indexes(*m_feed).contains(tx.ledger));
        ledger = tx.ledger;
    }
    QCOMPARE(hashes.size(), 40);
}

/// When a ledger closes, all transactions of earlier ledgers have arrived, but none of its own.
void TestLiveFeed::talliesAgreeWithTheLedgers()
{
    startNode();
    qint64 first = 0;
    int closes = 0;
    connect(m_feed.get(), &LedgerFeed::typesChanged, this, [&] {
        qint64 told = 0;
        for (const LedgerFeed::Ledger &ledger : m_feed->ledgers())
            told += ledger.id >= first && ledger.id < newest() ? ledger.txns : 0;
        qint64 counted = 0;
        for (const LedgerFeed::TypeCount &type : m_feed->types())
            counted += type.count;
        QCOMPARE(counted, told);
        ++closes;
    });
    const QSignalSpy changed(m_feed.get(), &LedgerFeed::ledgersChanged);
    m_feed->start();
    // At first there are only past ledgers; `first` is the first ledger whose close is seen.
    connect(m_feed.get(), &LedgerFeed::ledgersChanged, this, [&] {
        const QList<qint64> missing = gaps(*m_feed);
        if (first == 0 && !missing.isEmpty())
            first = missing.last() + 1;
    });
    QTRY_VERIFY_WITH_TIMEOUT(closes >= 10, patience);
}

void TestLiveFeed::waitsForTheNode()
{
    m_feed->start();
    QTest::qWait(100);
    QVERIFY(m_feed->running());
    QVERIFY(!m_feed->connected());
    startNode();
    QTRY_VERIFY_WITH_TIMEOUT(m_feed->ledgers().size() >= 59, patience);
    QVERIFY(m_feed->connected());
}

void TestLiveFeed::comesBackAfterTheNode_data()
{
    QTest::addColumn<int>("signal");
    QTest::newRow("stopped") << SIGTERM;
    QTest::newRow("killed") << SIGKILL;
}

void TestLiveFeed::comesBackAfterTheNode()
{
    QFETCH(int, signal);
    startNode();
    m_feed->start();
    QTRY_COMPARE_WITH_TIMEOUT(m_feed->ledgers().size(), 60, patience);
    m_node->signal(signal);
    QTRY_VERIFY_WITH_TIMEOUT(!m_feed->connected(), patience);
    const qint64 before = newest();
    QVERIFY(m_feed->running());
    m_node->waitForEnd();
    startNode();
    QTRY_VERIFY_WITH_TIMEOUT(m_feed->connected(), patience);
    QTRY_VERIFY_WITH_TIMEOUT(newest() > before + 2, patience);
    QTRY_COMPARE_WITH_TIMEOUT(m_feed->ledgers().size(), 60, patience);
    // The ledgers that closed in between have been filled in, except the newest one at the time of
    // connecting.
    QTRY_VERIFY_WITH_TIMEOUT(gaps(*m_feed).size() <= 1, patience);
    QVERIFY(isAscending(*m_feed));
}

void TestLiveFeed::stopsAndRestarts()
{
    startNode();
    m_feed->start();
    QTRY_VERIFY_WITH_TIMEOUT(!m_feed->txs().isEmpty(), patience);
    m_feed->stop();
    QVERIFY(!m_feed->connected());
    const QSignalSpy ledgers(m_feed.get(), &LedgerFeed::ledgersChanged);
    const QSignalSpy txs(m_feed.get(), &LedgerFeed::txsChanged);
    const QList<qint64> before = indexes(*m_feed);
    QVERIFY(!before.isEmpty());
    QTest::qWait(600); // long enough for three ledgers
    QCOMPARE(ledgers.count() + txs.count(), 0);
    QCOMPARE(indexes(*m_feed), before);

    m_feed->start();
    QTRY_VERIFY_WITH_TIMEOUT(m_feed->connected(), patience);
    QTRY_VERIFY_WITH_TIMEOUT(newest() > before.last() + 3, patience);
    QTRY_VERIFY_WITH_TIMEOUT(txs.count() > 0, patience);
    QVERIFY(isAscending(*m_feed));
}

TIDEWICK_LOOPBACK_TEST_MAIN(TestLiveFeed)
#include "tst_livefeed.moc"
