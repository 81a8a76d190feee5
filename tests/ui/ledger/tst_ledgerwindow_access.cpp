// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "ui/SpeechLog.h"
#include "ui/ledger/LedgerRig.h"

#include <QApplication>

using namespace tidewick;

/// What a screen reader says about the live ledger while it changes.
class TestLedgerWindowAccess : public QObject
{
    Q_OBJECT

private slots:
    void keepsQuietAboutLedgers();
    void speaksTheFocusedBar();
    void keepsQuietAtTheFocusedBar();
    void saysWhenTheConnectionChanges();
    void namesTheTypesAnew();
    void speaksTheFocusedTransaction();
    void keepsQuietAboutTransactions();
    void keepsTheFocusedTransaction();
    void keepsQuietWhereTheMouseWas();
};

namespace {

QString focusOnBar(qint64 ledger, qint64 txns)
{
    return QStringLiteral("focus ListItem Ledger %1, %2 transactions").arg(ledger).arg(txns);
}

QString focusOnTransaction(int transaction)
{
    return QStringLiteral("focus ListItem Payment, account%1, tesSUCCESS").arg(transaction);
}

/// Lists transactions whose accounts tell them apart.
void transact(const LedgerRig &rig, int first, int count)
{
    for (int i = first; i < first + count; ++i)
        rig.stream.transact(LedgerRig::nameOf(i), QStringLiteral("Payment"), LedgerRig::firstLedger,
                            QStringLiteral("tesSUCCESS"), QStringLiteral("account%1").arg(i));
    rig.flush();
}

void focusTransactions(LedgerRig &rig)
{
    rig.key(Qt::Key_Tab);
    rig.key(Qt::Key_Tab);
    QVERIFY(rig.list().hasFocus());
}

} // namespace

void TestLedgerWindowAccess::keepsQuietAboutLedgers()
{
    LedgerRig rig;
    rig.closeMany(60);
    SpeechLog log;
    rig.close(7);
    QCOMPARE(log.spoken(), QStringList());
    const QStringList renamed = log.renamed();
    QVERIFY(renamed.contains(QStringLiteral("This ledger: 7 transactions")));
    QVERIFY(renamed.size() <= 4); // the header and three tiles
}

void TestLedgerWindowAccess::speaksTheFocusedBar()
{
    LedgerRig rig;
    rig.closeMany(3);
    SpeechLog log;
    rig.key(Qt::Key_Tab);
    QCOMPARE(log.spoken().constLast(), focusOnBar(LedgerRig::firstLedger + 2, 230));
    rig.key(Qt::Key_Left);
    QCOMPARE(log.spoken(), QStringList(focusOnBar(LedgerRig::firstLedger + 1, 220)));
}

/// While the bars move along, the focus stays at its ledger. A step leads to that ledger's
/// neighbour, which has to be another object: a screen reader does not speak of the same one twice.
void TestLedgerWindowAccess::keepsQuietAtTheFocusedBar()
{
    LedgerRig rig;
    rig.closeMany(60);
    rig.key(Qt::Key_Tab);
    const auto focused = [&] {
        auto *list = QAccessible::queryAccessibleInterface(&rig.histogram());
        return QAccessible::uniqueId(list->focusChild());
    };
    const QAccessible::Id before = focused();
    SpeechLog log;
    rig.close(7);
    QCOMPARE(log.spoken(), QStringList());
    QCOMPARE(focused(), before);
    rig.key(Qt::Key_Right);
    QCOMPARE(log.spoken(), QStringList(focusOnBar(LedgerRig::firstLedger + 60, 7)));
    QVERIFY(focused() != before);
}

void TestLedgerWindowAccess::saysWhenTheConnectionChanges()
{
    LedgerRig rig;
    SpeechLog log;
    rig.close(7);
    QCOMPARE(log.spoken(), QStringList(QStringLiteral("notice Live")));
    rig.stream.fail();
    QCOMPARE(log.spoken(), QStringList(QStringLiteral("notice Connecting…")));
}

/// A line whose count has changed is another object, since nobody is told about its new name.
void TestLedgerWindowAccess::namesTheTypesAnew()
{
    LedgerRig rig;
    QWidget &types = rig.named("By type");
    auto *list = QAccessible::queryAccessibleInterface(&types);
    rig.close(7);
    rig.transact(1);
    rig.close(7);
    QAccessibleInterface *one = list->child(0);
    const QAccessible::Id id = QAccessible::uniqueId(one);
    QCOMPARE(one->text(QAccessible::Name), QStringLiteral("Payment 1"));
    SpeechLog log;
    rig.transact(1);
    rig.close(7);
    QCOMPARE(log.spoken(), QStringList());
    QVERIFY(!one->isValid());
    QCOMPARE(list->child(0)->text(QAccessible::Name), QStringLiteral("Payment 2"));
    QCOMPARE(QAccessible::accessibleInterface(id), nullptr);
}

void TestLedgerWindowAccess::speaksTheFocusedTransaction()
{
    LedgerRig rig;
    transact(rig, 0, 3);
    SpeechLog log;
    focusTransactions(rig);
    QCOMPARE(log.spoken().constLast(), focusOnTransaction(2));
    rig.key(Qt::Key_Down);
    QCOMPARE(log.spoken(), QStringList(focusOnTransaction(1)));
}

void TestLedgerWindowAccess::keepsQuietAboutTransactions()
{
    LedgerRig rig;
    transact(rig, 0, 3);
    focusTransactions(rig);
    SpeechLog log;
    transact(rig, 3, 5);
    QCOMPARE(log.spoken(), QStringList());
    rig.key(Qt::Key_Up);
    QCOMPARE(log.spoken(), QStringList(focusOnTransaction(3)));
}

/// Of a busy ledger, more transactions arrive at once than the list has rows.
void TestLedgerWindowAccess::keepsTheFocusedTransaction()
{
    LedgerRig rig;
    transact(rig, 0, 3);
    focusTransactions(rig);
    SpeechLog log;
    transact(rig, 100, 60);
    transact(rig, 200, 60);
    QCOMPARE(log.spoken(), QStringList());
    rig.key(Qt::Key_Return);
    QCOMPARE(rig.opened, QStringList{QStringLiteral("https://xrplexplorer.com/tx/T2")});

    // The others are there as soon as the focus is elsewhere.
    rig.key(Qt::Key_Tab);
    QCOMPARE(rig.list().model()->rowCount(), 40);
    QCOMPARE(rig.list().row(rig.list().model()->index(0, 0)).hash, LedgerRig::nameOf(259));
    log.spoken();
    rig.key(Qt::Key_Tab);
    QCOMPARE(log.spoken().constLast(), focusOnTransaction(259));
}

/// Without the keyboard, the rows come and go; a row that Qt makes the current one is no news.
void TestLedgerWindowAccess::keepsQuietWhereTheMouseWas()
{
    LedgerRig rig;
    transact(rig, 0, 3);
    focusTransactions(rig);
    rig.click(rig.row(1));
    SpeechLog log;
    transact(rig, 100, 60);
    QCOMPARE(rig.list().row(rig.list().model()->index(0, 0)).hash, LedgerRig::nameOf(159));
    QCOMPARE(log.spoken(), QStringList());
}

TIDEWICK_SPEECH_TEST_MAIN(TestLedgerWindowAccess)
#include "tst_ledgerwindow_access.moc"
