// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "support/Surroundings.h"
#include "ui/ledger/HistogramTexts.h"

#include <QApplication>

using namespace tidewick;

/// Keyboard navigation through the bars.
class TestLedgerHistogramKeys : public QObject
{
    Q_OBJECT

private slots:
    void keysStepThroughTheBars();
    void keysVisitEachDuplicate();
    void focusStaysOnItsLedger();
    void clicksGiveNoFocus();
    void focusReturnsWithTheWindow();
};

void TestLedgerHistogramKeys::keysStepThroughTheBars()
{
    LedgerRig rig;
    rig.key(Qt::Key_Tab);
    QVERIFY(rig.histogram().hasFocus());
    for (const Qt::Key key : {Qt::Key_Left, Qt::Key_Home, Qt::Key_Return})
        rig.key(key);
    QCOMPARE(rig.histogram().current(), -1);
    QCOMPARE(label(rig), QString());

    rig.closeMany(60);
    rig.key(Qt::Key_Left);
    const auto goesTo = [&](Qt::Key key, qsizetype place) {
        rig.key(key);
        return rig.histogram().current() == place && label(rig) == labelOf(rig, place);
    };
    QVERIFY(goesTo(Qt::Key_End, 59));
    QVERIFY(goesTo(Qt::Key_Right, 59));
    QVERIFY(goesTo(Qt::Key_Left, 58));
    QVERIFY(goesTo(Qt::Key_Home, 0));
    QVERIFY(goesTo(Qt::Key_Left, 0));
    QVERIFY(goesTo(Qt::Key_Right, 1));
    for (const Qt::Key key : {Qt::Key_Return, Qt::Key_Enter, Qt::Key_Space})
        rig.key(key);
    QCOMPARE(rig.opened, QStringList(3, pageOf(LedgerRig::firstLedger + 1)));
    // The bar under the pointer takes precedence over the focused one.
    rig.pointAt(rig.bar(20));
    QCOMPARE(label(rig), labelOf(rig, 20));
    rig.pointAt({2, 2});
    QCOMPARE(label(rig), labelOf(rig, 1));
}

/// The stream may report the same ledger twice.
void TestLedgerHistogramKeys::keysVisitEachDuplicate()
{
    LedgerRig rig;
    rig.close({1, 2});
    for (const qint64 seconds : {20, 30, 40})
        rig.stream.close(LedgerRig::firstLedger + 1, 2, 800'000'000 + seconds);
    rig.stream.close(LedgerRig::firstLedger + 2, 3, 800'000'050);
    QCOMPARE(rig.histogram().ledgers().size(), 6);
    rig.key(Qt::Key_Tab);
    rig.key(Qt::Key_Home);
    QList<qsizetype> places;
    for (int i = 0; i < 5; ++i) {
        rig.key(Qt::Key_Right);
        places += rig.histogram().current();
    }
    QCOMPARE(places, (QList<qsizetype>{1, 2, 3, 4, 5}));
    for (int i = 0; i < 5; ++i) {
        rig.key(Qt::Key_Left);
        places += rig.histogram().current();
    }
    QCOMPARE(places.mid(5), (QList<qsizetype>{4, 3, 2, 1, 0}));
}

void TestLedgerHistogramKeys::focusStaysOnItsLedger()
{
    LedgerRig rig;
    rig.closeMany(60);
    rig.key(Qt::Key_Tab);
    QCOMPARE(rig.histogram().current(), 59);
    rig.close(1);
    QCOMPARE(rig.histogram().current(), 58);
    rig.key(Qt::Key_Return);
    QCOMPARE(rig.opened, QStringList{pageOf(LedgerRig::firstLedger + 59)});
    rig.key(Qt::Key_Home);
    rig.close(1);
    // The focused ledger has dropped out; the next one is now the oldest.
    QCOMPARE(rig.histogram().current(), 0);
    QCOMPARE(label(rig), labelOf(rig, 0));
}

void TestLedgerHistogramKeys::clicksGiveNoFocus()
{
    LedgerRig rig;
    rig.closeMany(60);
    rig.click(rig.bar(30));
    rig.pointAt({2, 2});
    QVERIFY(!rig.histogram().hasFocus());
    QCOMPARE(label(rig), QStringLiteral("last 60 ledgers · avg 505"));
    // A window that has just opened may receive keys meant for another.
    rig.opened.clear();
    for (const Qt::Key key : {Qt::Key_Return, Qt::Key_Space})
        rig.key(key);
    QCOMPARE(rig.opened, QStringList{});
    rig.key(Qt::Key_Backtab);
    rig.key(Qt::Key_Tab);
    QCOMPARE(label(rig), labelOf(rig, 59));
}

void TestLedgerHistogramKeys::focusReturnsWithTheWindow()
{
    LedgerRig rig;
    rig.closeMany(60);
    rig.key(Qt::Key_Tab);
    rig.key(Qt::Key_Left);
    {
        QWidget other;
        other.show();
        other.activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(&other));
        QCOMPARE(label(rig), QStringLiteral("last 60 ledgers · avg 505"));
    }
    rig.window.activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(&rig.window));
    QCOMPARE(rig.histogram().current(), 58);
    QCOMPARE(label(rig), labelOf(rig, 58));
}

TIDEWICK_GUI_TEST_MAIN(TestLedgerHistogramKeys)
#include "tst_ledgerhistogram_keys.moc"
