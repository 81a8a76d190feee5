// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "support/Surroundings.h"
#include "ui/ledger/LedgerTexts.h"

using namespace tidewick;

class TestLedgerTexts : public QObject
{
    Q_OBJECT

private slots:
    void beforeTheFirstLedger();
    void latest();
    void busiest_data();
    void busiest();
    void averages_data();
    void averages();
    void rates_data();
    void rates();
    void bars();
    void moreTypes_data();
    void moreTypes();
    void accounts_data();
    void accounts();
    void rowNames_data();
    void rowNames();
    void fixedTexts();
};

namespace {

constexpr qint64 most = std::numeric_limits<qint64>::max();

/// Ledgers 101, 102, … with these numbers of transactions.
LedgerTexts::Ledgers ledgers(const QList<qint64> &counts)
{
    LedgerTexts::Ledgers ledgers;
    for (const qint64 txns : counts)
        ledgers.append({.id = 101 + ledgers.size(), .txns = txns, .closed = {}});
    return ledgers;
}

} // namespace

void TestLedgerTexts::beforeTheFirstLedger()
{
    QCOMPARE(LedgerTexts::latest({}), nullptr);
    QCOMPARE(LedgerTexts::busiest({}), nullptr);
    QCOMPARE(LedgerTexts::average({}), 0.0);
    QCOMPARE(LedgerTexts::latestIndex({}), QStringLiteral("waiting…"));
    QCOMPARE(LedgerTexts::figure({}), QStringLiteral("—"));
    QCOMPARE(LedgerTexts::rate({}), QStringLiteral("—"));
    QCOMPARE(LedgerTexts::busiestIndex({}), QString());
    QCOMPARE(LedgerTexts::summary({}), QString());
    QCOMPARE(LedgerTexts::status(false), QStringLiteral("Connecting…"));
}

void TestLedgerTexts::latest()
{
    const auto three = ledgers({5, 7, 0});
    QCOMPARE(LedgerTexts::latest(three)->id, 103);
    QCOMPARE(LedgerTexts::latestIndex(three), QStringLiteral("103"));
    QCOMPARE(LedgerTexts::figure(0), QStringLiteral("0"));
    QCOMPARE(LedgerTexts::figure(1'234'567), QStringLiteral("1234567"));
    QCOMPARE(LedgerTexts::status(true), QStringLiteral("Live"));
}

void TestLedgerTexts::busiest_data()
{
    QTest::addColumn<QList<qint64>>("counts");
    QTest::addColumn<QString>("text");
    QTest::newRow("one") << QList<qint64>{0} << QStringLiteral("ledger #101");
    QTest::newRow("the last") << QList<qint64>{1, 2, 3} << QStringLiteral("ledger #103");
    QTest::newRow("equal") << QList<qint64>{3, 9, 4, 9} << QStringLiteral("ledger #102");
    QTest::newRow("all equal") << QList<qint64>{0, 0, 0} << QStringLiteral("ledger #101");
    QTest::newRow("huge") << QList<qint64>{most - 1, most} << QStringLiteral("ledger #102");
}

void TestLedgerTexts::busiest()
{
    QFETCH(QList<qint64>, counts);
    QFETCH(QString, text);
    QCOMPARE(LedgerTexts::busiestIndex(ledgers(counts)), text);
}

void TestLedgerTexts::averages_data()
{
    QTest::addColumn<QList<qint64>>("counts");
    QTest::addColumn<QString>("summary");
    QTest::addColumn<double>("average");
    const auto row = [](const char *name, const QList<qint64> &counts, const char *summary,
                        double average) {
        QTest::newRow(name) << counts << QString::fromUtf8(summary) << average;
    };
    row("one", {7}, "last 1 ledgers · avg 7", 7);
    row("without its fraction", {1, 2, 2}, "last 3 ledgers · avg 1", 5 / 3.0);
    row("just below", {9, 10, 10, 10}, "last 4 ledgers · avg 9", 9.75);
    row("zeroes", {0, 0}, "last 2 ledgers · avg 0", 0);
    row("sixty", QList<qint64>(60, 137), "last 60 ledgers · avg 137", 137);
    row("more than fits", {most, most, most}, "last 3 ledgers · avg 9223372036854775807",
        double(most));
    row("huge and odd", {most, most - 1}, "last 2 ledgers · avg 9223372036854775806", double(most));
}

void TestLedgerTexts::averages()
{
    QFETCH(QList<qint64>, counts);
    QFETCH(QString, summary);
    QFETCH(double, average);
    QCOMPARE(LedgerTexts::summary(ledgers(counts)), summary);
    QCOMPARE(LedgerTexts::average(ledgers(counts)), average);
}

void TestLedgerTexts::rates_data()
{
    QTest::addColumn<double>("rate");
    QTest::addColumn<QString>("text");
    const auto row = [](double rate, const char *text) {
        QTest::newRow(text) << rate << QString::fromLatin1(text);
    };
    row(0, "0.0");
    row(29.4, "29.4");
    row(0.25, "0.2");
    row(0.75, "0.8");
    row(1.25, "1.2");
    row(12.25, "12.2");
    row(0.05, "0.1");
    row(0.35, "0.3");
    row(9.95, "9.9");
    row(999.95, "1000.0");
    row(1e15, "1000000000000000.0");
    row(-0.04, "-0.0");
}

void TestLedgerTexts::rates()
{
    QFETCH(double, rate);
    QFETCH(QString, text);
    QCOMPARE(LedgerTexts::rate(rate), text);
}

void TestLedgerTexts::bars()
{
    const LedgerFeed::Ledger ledger{.id = 98'765'425, .txns = 137, .closed = {}};
    QCOMPARE(LedgerTexts::bar(ledger), QStringLiteral("#98765425 · 137 transactions"));
    QCOMPARE(LedgerTexts::barName(ledger), QStringLiteral("Ledger 98765425, 137 transactions"));
    const LedgerFeed::Ledger single{.id = 1, .txns = 1, .closed = {}};
    QCOMPARE(LedgerTexts::bar(single), QStringLiteral("#1 · 1 transactions"));
}

void TestLedgerTexts::moreTypes_data()
{
    QTest::addColumn<qsizetype>("types");
    QTest::addColumn<QString>("text");
    QTest::newRow("none") << qsizetype(0) << QString();
    QTest::newRow("six") << qsizetype(6) << QString();
    QTest::newRow("seven") << qsizetype(7) << QStringLiteral("and 1 more type");
    QTest::newRow("eight") << qsizetype(8) << QStringLiteral("and 2 more types");
    QTest::newRow("twenty") << qsizetype(20) << QStringLiteral("and 14 more types");
}

void TestLedgerTexts::moreTypes()
{
    QFETCH(qsizetype, types);
    QFETCH(QString, text);
    QCOMPARE(LedgerTexts::moreTypes(types), text);
}

void TestLedgerTexts::accounts_data()
{
    QTest::addColumn<QString>("account");
    QTest::addColumn<QString>("text");
    const auto row = [](const char *account, const char *text) {
        QTest::newRow(account) << QString::fromUtf8(account) << QString::fromUtf8(text);
    };
    row("", "");
    row("r", "r");
    row("r2345678901234", "r2345678901234");
    row("r23456789012345", "r23456…2345");
    row("r234567890123456", "r23456…3456");
    row("rHb9CJAWyB4rj91VRWn96DkukG4bwdtyTh", "rHb9CJ…tyTh");
    row("Абвгдежзийклмн", "Абвгдежзийклмн");
    row("Абвгдежзийклмно", "Абвгде…лмно");
}

void TestLedgerTexts::accounts()
{
    QFETCH(QString, account);
    QFETCH(QString, text);
    QCOMPARE(LedgerTexts::account(account), text);
}

void TestLedgerTexts::rowNames_data()
{
    QTest::addColumn<QString>("account");
    QTest::addColumn<QString>("result");
    QTest::addColumn<QString>("name");
    const QString account = QStringLiteral("rHb9CJAWyB4rj91VRWn96DkukG4bwdtyTh");
    QTest::newRow("all") << account << QStringLiteral("tesSUCCESS")
                         << QStringLiteral("Payment, %1, tesSUCCESS").arg(account);
    QTest::newRow("no account") << QString() << QStringLiteral("tecPATH_DRY")
                                << QStringLiteral("Payment, tecPATH_DRY");
    QTest::newRow("no result") << account << QString()
                               << QStringLiteral("Payment, %1").arg(account);
    QTest::newRow("neither") << QString() << QString() << QStringLiteral("Payment");
    QTest::newRow("placeholders") << QStringLiteral("%1") << QStringLiteral("%2 %n")
                                  << QStringLiteral("Payment, %1, %2 %n");
}

void TestLedgerTexts::rowNames()
{
    QFETCH(QString, account);
    QFETCH(QString, result);
    QFETCH(QString, name);
    const LedgerFeed::Tx tx{.id = QStringLiteral("A"),
                            .type = QStringLiteral("Payment"),
                            .account = account,
                            .result = result,
                            .ledger = 1};
    QCOMPARE(LedgerTexts::rowName(tx), name);
}

void TestLedgerTexts::fixedTexts()
{
    QCOMPARE(LedgerTexts::waiting(), QStringLiteral("Waiting for transactions…"));
    QCOMPARE(LedgerTexts::footnote(),
             QStringLiteral("Click a ledger or a transaction to open it on xrplexplorer.com. "
                            "Everything here comes from your node's own stream."));
    QCOMPARE(LedgerTexts::footnoteOnTwoLines().replace(u'\n', u' '), LedgerTexts::footnote());
}

TIDEWICK_TEST_MAIN(TestLedgerTexts)
#include "tst_ledgertexts.moc"
