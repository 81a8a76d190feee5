// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "Messages.h"
#include "platform/json/JsonRead.h"
#include "support/ScriptedStream.h"
#include "support/Surroundings.h"

#include <QHash>
#include <QJsonArray>
#include <QSignalSpy>

#include <algorithm>

using namespace tidewick;
using namespace std::chrono_literals;

namespace {

const QString payment = QStringLiteral("Payment");

QStringList hashes(const LedgerFeed &feed)
{
    QStringList hashes;
    for (const LedgerFeed::Tx &tx : feed.txs())
        hashes += tx.id;
    return hashes;
}

} // namespace

/// Tests what the feed keeps from the live stream.
class TestLedgerFeedLists : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void closedLedgers();
    void repeatedCloses();
    void transactionsWaitForTheFlush();
    void flushesOnTheGrid();
    void manyInOneFlush();
    void newestComeFirst();
    void talliesChangeOnClose();
    void talliesLeaveWithTheirLedger();
    void typesAreSorted();
    void nonsenseChangesNothing();
    void rate_data();
    void rate();
    void rateOverAllLedgers();
    void replay_data();
    void replay();

private:
    void transact(int count, const QString &type, qint64 ledger);

    std::unique_ptr<ScriptedStream> m_stream;
    std::unique_ptr<LedgerFeed> m_feed;
};

void TestLedgerFeedLists::init()
{
    m_feed.reset();
    m_stream = std::make_unique<ScriptedStream>();
    m_feed = std::make_unique<LedgerFeed>(m_stream->host());
    m_feed->start();
}

void TestLedgerFeedLists::transact(int count, const QString &type, qint64 ledger)
{
    for (int i = 0; i < count; ++i)
        m_stream->transact(QStringLiteral("A"), type, ledger);
}

void TestLedgerFeedLists::closedLedgers()
{
    const QSignalSpy changed(m_feed.get(), &LedgerFeed::ledgersChanged);
    m_stream->close(1000, 25, 848519260);
    const LedgerFeed::Ledger expected{1000, 25, LedgerFeed::Time(std::chrono::seconds(1795204060))};
    QCOMPARE(m_feed->ledgers(), QList{expected});
    for (qint64 i = 1; i < 60; ++i)
        m_stream->close(1000 + i, 25, 848519260 + i);
    QCOMPARE(indexes(*m_feed), fromTo(1000, 1059));
    m_stream->close(1060, 25, 848519320);
    QCOMPARE(indexes(*m_feed), fromTo(1001, 1060));
    QCOMPARE(changed.count(), 61);
}

/// Closes are recorded in the order they arrive.
void TestLedgerFeedLists::repeatedCloses()
{
    m_stream->close(7, 1, 100);
    m_stream->close(7, 1, 100);
    m_stream->close(5, 1, 90);
    QCOMPARE(indexes(*m_feed), (QList<qint64>{7, 7, 5}));
}

void TestLedgerFeedLists::transactionsWaitForTheFlush()
{
    const QSignalSpy changed(m_feed.get(), &LedgerFeed::txsChanged);
    m_stream->transact(QStringLiteral("A"), payment, 7, QStringLiteral("tecPATH_DRY"),
                       QStringLiteral("r1"));
    QVERIFY(m_feed->txs().isEmpty());
    m_stream->clock().advance(400ms);
    const LedgerFeed::Tx expected{QStringLiteral("A"), payment, QStringLiteral("r1"),
                                  QStringLiteral("tecPATH_DRY"), 7};
    QCOMPARE(m_feed->txs(), QList{expected});
    QCOMPARE(changed.count(), 1);
    QCOMPARE(changed.first().first().value<qsizetype>(), 1);
    m_stream->clock().advance(1h);
    QCOMPARE(changed.count(), 1);
}

/// A transaction is listed at the end of the interval in which it arrives.
void TestLedgerFeedLists::flushesOnTheGrid()
{
    const QSignalSpy changed(m_feed.get(), &LedgerFeed::txsChanged);
    m_stream->clock().advance(100ms);
    transact(1, payment, 7);
    m_stream->clock().advance(200ms);
    transact(1, payment, 7);
    m_stream->clock().advance(100ms - 1ns);
    QCOMPARE(changed.count(), 0);
    m_stream->clock().advance(1ns);
    QCOMPARE(changed.count(), 1);
    QCOMPARE(m_feed->txs().size(), 2);
    // The next two arrive 1.6 s and 1.9 s after the start.
    m_stream->clock().advance(1200ms);
    transact(1, payment, 7);
    m_stream->clock().advance(300ms);
    transact(1, payment, 7);
    QCOMPARE(changed.count(), 1);
    m_stream->clock().advance(100ms);
    QCOMPARE(changed.count(), 2);
    QCOMPARE(m_feed->txs().size(), 4);
}

void TestLedgerFeedLists::manyInOneFlush()
{
    const QSignalSpy changed(m_feed.get(), &LedgerFeed::txsChanged);
    QStringList expected;
    for (int i = 0; i < 45; ++i) {
        m_stream->transact(QString::number(i), payment, 7);
        if (i >= 5)
            expected.prepend(QString::number(i));
    }
    m_stream->clock().advance(400ms);
    QCOMPARE(hashes(*m_feed), expected);
    QCOMPARE(changed.count(), 1);
    QCOMPARE(changed.first().first().value<qsizetype>(), 40);
    // The tallies count all of them.
    m_stream->close(7, 45, 100);
    QCOMPARE(m_feed->types(), (QList<LedgerFeed::TypeCount>{{payment, 45}}));
}

void TestLedgerFeedLists::newestComeFirst()
{
    const QSignalSpy changed(m_feed.get(), &LedgerFeed::txsChanged);
    for (int i = 0; i < 50; i += 10) {
        for (int j = i; j < i + 10; ++j)
            m_stream->transact(QString::number(j), payment, 7);
        m_stream->clock().advance(400ms);
        QCOMPARE(m_feed->txs().size(), std::min(i + 10, 40));
        QCOMPARE(m_feed->txs().first().id, QString::number(i + 9));
    }
    QCOMPARE(m_feed->txs().last().id, QStringLiteral("10"));
    QCOMPARE(changed.count(), 5);
    QCOMPARE(changed.last().first().value<qsizetype>(), 10);
    // The same transaction sent twice is listed twice.
    transact(2, payment, 7);
    m_stream->clock().advance(400ms);
    QCOMPARE(hashes(*m_feed).first(3),
             (QStringList{QStringLiteral("A"), QStringLiteral("A"), QStringLiteral("49")}));
}

void TestLedgerFeedLists::talliesChangeOnClose()
{
    const QSignalSpy changed(m_feed.get(), &LedgerFeed::typesChanged);
    m_stream->close(7, 3, 100);
    transact(3, payment, 7);
    m_stream->clock().advance(400ms);
    QVERIFY(m_feed->types().isEmpty());
    QCOMPARE(changed.count(), 0);
    m_stream->close(8, 0, 104);
    QCOMPARE(m_feed->types(), (QList<LedgerFeed::TypeCount>{{payment, 3}}));
    QCOMPARE(changed.count(), 1);
    m_stream->close(9, 0, 108);
    QCOMPARE(changed.count(), 1);
}

void TestLedgerFeedLists::talliesLeaveWithTheirLedger()
{
    m_stream->close(7, 3, 100);
    transact(3, payment, 7);
    transact(1, payment, 8);
    // A transaction of a ledger that closes only after the next close.
    transact(5, QStringLiteral("TrustSet"), 9);
    m_stream->close(8, 1, 104);
    QCOMPARE(m_feed->types(), (QList<LedgerFeed::TypeCount>{{payment, 4}}));
    m_stream->close(9, 5, 108);
    QCOMPARE(m_feed->types(), (QList<LedgerFeed::TypeCount>{{payment, 4}}));
    for (qint64 i = 10; i < 67; ++i)
        m_stream->close(i, 0, 4 * i);
    QCOMPARE(m_feed->types(), (QList<LedgerFeed::TypeCount>{{payment, 4}}));
    m_stream->close(67, 0, 268);
    QCOMPARE(m_feed->types(), (QList<LedgerFeed::TypeCount>{{payment, 1}}));
    m_stream->close(68, 0, 272);
    QVERIFY(m_feed->types().isEmpty());
}

void TestLedgerFeedLists::typesAreSorted()
{
    m_stream->close(7, 0, 100);
    transact(2, QStringLiteral("TrustSet"), 7);
    transact(1, payment, 7);
    transact(4, payment, 8);
    transact(2, QStringLiteral("OfferCreate"), 8);
    transact(1, QString(), 8);
    m_stream->close(8, 0, 104);
    QList<LedgerFeed::TypeCount> types = m_feed->types();
    QCOMPARE(types.size(), 4);
    QCOMPARE(types.first(), (LedgerFeed::TypeCount{payment, 5}));
    QCOMPARE(types.last(), (LedgerFeed::TypeCount{QString(), 1}));
    // The order of equal counts is unspecified.
    std::sort(types.begin(), types.end(), [](auto &a, auto &b) { return a.type < b.type; });
    QCOMPARE(types, (QList<LedgerFeed::TypeCount>{{QString(), 1},
                                                  {QStringLiteral("OfferCreate"), 2},
                                                  {payment, 5},
                                                  {QStringLiteral("TrustSet"), 2}}));
}

void TestLedgerFeedLists::nonsenseChangesNothing()
{
    m_stream->close(7, 1, 100);
    const QSignalSpy ledgers(m_feed.get(), &LedgerFeed::ledgersChanged);
    const QSignalSpy types(m_feed.get(), &LedgerFeed::typesChanged);
    for (const char *text :
         {"", "x", "[]", "{}", "{'id':1}", "{'id':1,'result':[]}", "{'id':500,'result':{}}",
          "{'id':1001,'error':'lgrNotFound','type':'response'}", "{'type':'transaction'}",
          "{'type':'ledgerClosed','ledger_index':9223372036854775808,'ledger_time':1}",
          "{'id':1001,'result':{'ledger':{'ledger_index':'8','transactions':[]}}}"})
        m_stream->say(json(text));
    m_stream->say(QString(100'000, u'['));
    m_stream->clock().advance(400ms);
    QCOMPARE(ledgers.count() + types.count(), 0);
    QCOMPARE(indexes(*m_feed), QList<qint64>{7});
    QVERIFY(m_feed->txs().isEmpty());
    QVERIFY(m_feed->connected());
}

void TestLedgerFeedLists::rate_data()
{
    using Closes = QList<std::tuple<qint64, QString>>;
    QTest::addColumn<Closes>("closes");
    QTest::addColumn<std::optional<double>>("rate");
    const auto row = [](const char *name, const QList<std::pair<qint64, const char *>> &closes,
                        std::optional<double> rate) {
        Closes list;
        for (const auto &[txns, seconds] : closes)
            list.append({txns, QString::fromLatin1(seconds)});
        QTest::newRow(name) << list << rate;
    };
    constexpr qint64 largest = std::numeric_limits<qint64>::max();
    row("none", {}, {});
    row("one", {{100, "0"}}, {});
    row("two", {{999, "0"}, {100, "4"}}, 25);
    row("three", {{999, "0"}, {10, "3"}, {20, "10"}}, 3);
    row("nothing in them", {{999, "0"}, {0, "4"}}, 0);
    row("at the same moment", {{1, "5"}, {100, "5"}}, {});
    row("backwards", {{1, "9"}, {100, "5"}}, {});
    row("backwards in between", {{1, "5"}, {2, "1"}, {8, "10"}}, 2);
    row("part of a second", {{1, "0"}, {100, "0.5"}}, 200);
    row("huge counts", {{1, "0"}, {largest, "1"}, {largest, "2"}}, double(largest));
    row("huge span", {{1, "-1e308"}, {100, "1e307"}}, 0);
    row("endless span", {{1, "-1.7e308"}, {100, "1.7e308"}}, {});
}

void TestLedgerFeedLists::rate()
{
    using Closes = QList<std::tuple<qint64, QString>>;
    QFETCH(Closes, closes);
    QFETCH(std::optional<double>, rate);
    qint64 index = 0;
    for (const auto &[txns, seconds] : closes)
        m_stream->say(json("{'type':'ledgerClosed','ledger_index':%1,'txn_count':%2,"
                           "'ledger_time':%3}")
                          .arg(++index)
                          .arg(txns)
                          .arg(seconds));
    QCOMPARE(indexes(*m_feed).size(), closes.size());
    QCOMPARE(m_feed->txRate().has_value(), rate.has_value());
    if (rate)
        QCOMPARE(*m_feed->txRate(), *rate);
}

void TestLedgerFeedLists::rateOverAllLedgers()
{
    for (qint64 i = 0; i < 70; ++i)
        m_stream->close(i, i, 4 * i);
    // The transactions of 59 ledgers, 11 to 69 each, in 59 times 4 s.
    QCOMPARE(m_feed->txRate(), std::optional<double>(59.0 * (11 + 69) / 2 / (59 * 4)));
}

void TestLedgerFeedLists::replay_data()
{
    QTest::addColumn<QStringList>("texts");
    for (const char *file : {"stream.jsonl", "stream-tx_json.jsonl"})
        QTest::newRow(file) << recordedTexts(file);
}

/// After a recorded session, the feed contains what a direct evaluation of the session finds.
void TestLedgerFeedLists::replay()
{
    QFETCH(QStringList, texts);
    QMap<qint64, LedgerFeed::Ledger> ledgers;
    QStringList newest;
    QHash<QString, qint64> counts;
    QHash<QString, qint64> countsAtClose;
    bool subscribed = false;
    for (const QString &text : texts) {
        m_stream->say(text);
        const QJsonObject message = JsonRead::parseObject(text.toUtf8()).value();
        const QJsonObject result = message[u"result"].toObject();
        const QJsonObject ledger = result[u"ledger"].toObject();
        if (message[u"id"] == 1) {
            subscribed = result[u"ledger_index"].toInteger() > 0;
        } else if (ledger.contains(u"close_time")) {
            const qint64 index = ledger[u"ledger_index"].toVariant().toLongLong();
            const LedgerFeed::Ledger told{index, ledger[u"transactions"].toArray().size(),
                                          ledgerTime(ledger[u"close_time"].toDouble())};
            if (ledgers.contains(index))
                QCOMPARE(told, ledgers[index]);
            ledgers[index] = told;
        } else if (message[u"type"] == QLatin1String("ledgerClosed")) {
            const qint64 index = message[u"ledger_index"].toInteger();
            ledgers[index] = {index, message[u"txn_count"].toInteger(),
                              ledgerTime(message[u"ledger_time"].toDouble())};
            countsAtClose = counts;
        } else if (message[u"type"] == QLatin1String("transaction")) {
            const QJsonObject body =
                message[message.contains(u"tx_json") ? u"tx_json" : u"transaction"].toObject();
            const QJsonObject &holder = message.contains(u"hash") ? message : body;
            newest.prepend(holder[u"hash"].toString());
            ++counts[body[u"TransactionType"].toString()];
        }
    }
    m_stream->clock().advance(400ms);

    // One of the recordings begins after its subscription.
    QCOMPARE(m_stream->sent().size(), subscribed ? 60 : 1);
    QVERIFY(ledgers.size() >= 11);
    QCOMPARE(m_feed->ledgers(), QList<LedgerFeed::Ledger>(ledgers.values()));
    QVERIFY(newest.size() >= 30);
    QCOMPARE(hashes(*m_feed), newest.first(std::min<qsizetype>(newest.size(), 40)));
    QVERIFY(countsAtClose.size() >= 10);
    QCOMPARE(m_feed->types().size(), countsAtClose.size());
    for (const LedgerFeed::TypeCount &type : m_feed->types())
        QCOMPARE(type.count, countsAtClose.value(type.type));
}

TIDEWICK_TEST_MAIN(TestLedgerFeedLists)
#include "tst_ledgerfeed_lists.moc"
