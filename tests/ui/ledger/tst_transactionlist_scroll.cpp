// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "support/Surroundings.h"
#include "ui/ledger/LedgerRig.h"

#include <QApplication>
#include <QScrollBar>
#include <QWheelEvent>

using namespace tidewick;

/// The scroll position while new rows arrive, and keyboard navigation.
class TestTransactionListScroll : public QObject
{
    Q_OBJECT

private slots:
    void staysAtTheTop();
    void keepsItsPositionWhenScrolledDown();
    void keepsTheRowUnderThePointer();
    void keepsTheFocusedRow();
    void allRowsReplaced_data();
    void allRowsReplaced();
    void returnsToTheTopOnLeave();
    void returnsToTheTopOnFocusOut();
    void easesDown();
    void arrivalsDuringTheAnimation();
    void standsStillAtTheTop();
    void doesNotAnimateWhileHidden();

    void keys();
    void keysOpenTheRingedRow();
    void keyboardStartsAtAVisibleRow();
    void focusReturnsWithTheWindow();
};

namespace {

/// In pixels. At the rig's window size, the list shows about four rows.
constexpr int rowHeight = 28;

QScrollBar &bar(const LedgerRig &rig)
{
    return *rig.list().verticalScrollBar();
}

/// Turns the wheel down by this number of notches.
void wheel(const LedgerRig &rig, int notches)
{
    QWidget &viewport = *rig.list().viewport();
    const QPointF place(100, 40);
    QWheelEvent event(place, viewport.mapToGlobal(place), {}, {0, -notches * 120}, Qt::NoButton,
                      Qt::NoModifier, Qt::NoScrollPhase, false);
    QCoreApplication::sendEvent(&viewport, &event);
}

/// The hash of the row with the focus ring; empty if there is none.
QString ringed(const LedgerRig &rig)
{
    const QModelIndex row = rig.list().shownCurrent();
    if (!row.isValid())
        return {};
    const QRect rect = rig.list().visualRect(row);
    const QPoint top(rect.center().x(), rect.top() + 1);
    const QColor color = rig.screen().pixelColor(rig.list().viewport()->mapTo(&rig.window, top));
    const Palette light({false});
    return color.blue() - color.red() > 60 ? rig.list().row(row).hash : QString();
}

void focusList(LedgerRig &rig)
{
    rig.key(Qt::Key_Tab);
    rig.key(Qt::Key_Tab);
}

} // namespace

void TestTransactionListScroll::staysAtTheTop()
{
    LedgerRig rig;
    for (const int arriving : {1, 1, 10, 3, 40, 100}) {
        rig.transact(arriving);
        QCOMPARE(bar(rig).value(), 0);
        QCOMPARE(rig.hashAt(rig.row(0)), LedgerRig::nameOf(rig.transactions() - 1));
    }
    QCOMPARE(rig.list().visualRect(rig.list().indexAt({5, 5})).height(), rowHeight);
}

void TestTransactionListScroll::keepsItsPositionWhenScrolledDown()
{
    LedgerRig rig;
    rig.transact(30);
    wheel(rig, 1);
    const int scrolled = bar(rig).value();
    QVERIFY(scrolled > 0);
    rig.pointAt({2, 2});
    QCOMPARE(bar(rig).value(), scrolled);
    const QPoint place = rig.list().viewport()->mapTo(&rig.window, QPoint(100, 20));
    const QString row = rig.hashAt(place);
    const QImage before = rig.screen();
    for (const int arriving : {1, 2, 3}) {
        rig.transact(arriving);
        QCOMPARE(rig.hashAt(place), row);
    }
    QCOMPARE(bar(rig).value(), scrolled + 6 * rowHeight);
    // Except for the scroll bar, the list looks the same to the pixel.
    const QRect rows(rig.list().viewport()->mapTo(&rig.window, QPoint()),
                     rig.list().viewport()->size());
    QCOMPARE(rig.screen().copy(rows), before.copy(rows));

    // After scrolling back to the top, a page at a time, it follows the newest row again.
    while (bar(rig).value() > 0)
        wheel(rig, -100);
    rig.pointAt({2, 2});
    rig.transact(1);
    QCOMPARE(bar(rig).value(), 0);
}

void TestTransactionListScroll::keepsTheRowUnderThePointer()
{
    LedgerRig rig;
    rig.transact(20);
    const QPoint place = rig.row(1);
    rig.pointAt(place);
    const QString row = rig.hashAt(place);
    const QImage before = rig.screen();
    for (const int arriving : {1, 3, 5}) {
        rig.transact(arriving);
        QCOMPARE(rig.hashAt(place), row);
        QCOMPARE(rig.list().row(rig.list().hoveredRow()).hash, row);
    }
    const QRect rows(rig.list().viewport()->mapTo(&rig.window, QPoint()),
                     rig.list().viewport()->size());
    QCOMPARE(rig.screen().copy(rows), before.copy(rows));
}

void TestTransactionListScroll::keepsTheFocusedRow()
{
    LedgerRig rig;
    rig.transact(20);
    focusList(rig);
    rig.key(Qt::Key_Down);
    const QString row = ringed(rig);
    QCOMPARE(row, LedgerRig::nameOf(18));
    const QPoint place = rig.row(1);
    rig.transact(6);
    QCOMPARE(rig.hashAt(place), row);
    QCOMPARE(ringed(rig), row);
    rig.key(Qt::Key_Return);
    QCOMPARE(rig.opened, QStringList{QStringLiteral("https://xrplexplorer.com/tx/") + row});
}

void TestTransactionListScroll::allRowsReplaced_data()
{
    QTest::addColumn<QString>("held");
    for (const char *held : {"by nothing", "by the pointer", "by the keyboard", "by the wheel"})
        QTest::newRow(held) << QString::fromLatin1(held);
}

void TestTransactionListScroll::allRowsReplaced()
{
    QFETCH(QString, held);
    LedgerRig rig;
    rig.transact(40);
    const QPoint place = rig.row(1);
    if (held == u"by the pointer")
        rig.pointAt(place);
    else if (held == u"by the wheel")
        wheel(rig, 1);
    else if (held == u"by the keyboard")
        focusList(rig);
    for (int burst = 0; burst < 3; ++burst) {
        rig.transact(90);
        QCOMPARE(rig.list().model()->rowCount(), 40);
        // The hovered row and the ringed one are among the rows that still exist.
        if (held == u"by the pointer")
            QCOMPARE(rig.list().row(rig.list().hoveredRow()).hash, rig.hashAt(place));
        if (held == u"by the keyboard")
            QVERIFY(!ringed(rig).isEmpty());
        if (held == u"by nothing")
            QCOMPARE(bar(rig).value(), 0);
    }
    rig.pointAt({2, 2});
}

void TestTransactionListScroll::returnsToTheTopOnLeave()
{
    LedgerRig rig;
    rig.transact(20);
    rig.pointAt(rig.row(2));
    rig.transact(7);
    QCOMPARE(bar(rig).value(), 7 * rowHeight);
    rig.pointAt({2, 2});
    QCOMPARE(bar(rig).value(), 0);
    QCOMPARE(rig.hashAt(rig.row(0)), LedgerRig::nameOf(26));
}

void TestTransactionListScroll::returnsToTheTopOnFocusOut()
{
    LedgerRig rig;
    rig.transact(20);
    focusList(rig);
    rig.key(Qt::Key_Down);
    rig.transact(3);
    rig.key(Qt::Key_Down);
    QCOMPARE(bar(rig).value(), 3 * rowHeight);
    rig.key(Qt::Key_Backtab);
    QCOMPARE(bar(rig).value(), 0);
    // If the keys have scrolled the list, it stays there.
    rig.key(Qt::Key_Tab);
    rig.key(Qt::Key_End);
    rig.key(Qt::Key_Backtab);
    QCOMPARE(bar(rig).value(), bar(rig).maximum());
}

void TestTransactionListScroll::easesDown()
{
    LedgerRig rig;
    rig.transact(20);
    rig.window.setStill(false);
    rig.transact(2);
    QCOMPARE(bar(rig).value(), 2 * rowHeight);
    int before = bar(rig).value();
    const EventCount frames(rig.list().viewport(), QEvent::Paint);
    while (bar(rig).value() > 0) {
        QVERIFY(bar(rig).value() <= before);
        before = bar(rig).value();
        QVERIFY(frames.count() < 1000);
        QTest::qWait(1);
    }
    QVERIFY(frames.count() >= 2);
    // If no visible row stays visible, there is nothing to animate.
    rig.transact(30);
    QCOMPARE(bar(rig).value(), 0);
    rig.transact(1);
    QCOMPARE(bar(rig).value(), rowHeight);
    rig.window.setStill(true);
    QCOMPARE(bar(rig).value(), 0);
}

void TestTransactionListScroll::arrivalsDuringTheAnimation()
{
    LedgerRig rig;
    rig.transact(20);
    rig.window.setStill(false);
    rig.transact(1);
    rig.transact(1);
    QCOMPARE(bar(rig).value(), 2 * rowHeight);
    // A pointer that enters during the animation holds the row under it.
    const QPoint place = rig.list().viewport()->mapTo(&rig.window, QPoint(100, 70));
    rig.pointAt(place);
    rig.transact(1);
    const QString row = rig.hashAt(place);
    const int value = bar(rig).value();
    QCoreApplication::processEvents();
    const EventCount timers(nullptr, QEvent::Timer);
    QTest::qWait(250);
    QCOMPARE(rig.hashAt(place), row);
    QCOMPARE(bar(rig).value(), value);
    QCOMPARE(timers.count(), 0);
}

void TestTransactionListScroll::standsStillAtTheTop()
{
    LedgerRig rig;
    rig.transact(20);
    rig.window.setStill(false);
    rig.pointAt(rig.row(1));
    QCoreApplication::processEvents();
    const EventCount timers(nullptr, QEvent::Timer);
    rig.pointAt({2, 2});
    QTest::qWait(250);
    QCOMPARE(timers.count(), 0);
}

void TestTransactionListScroll::doesNotAnimateWhileHidden()
{
    LedgerRig rig;
    rig.transact(20);
    rig.window.setStill(false);
    rig.transact(2);
    rig.window.hide();
    QCOMPARE(bar(rig).value(), 0);
    rig.window.show();
    QVERIFY(QTest::qWaitForWindowActive(&rig.window));
    rig.window.showMinimized();
    QTRY_VERIFY(rig.window.isMinimized());
    rig.transact(2);
    QCOMPARE(bar(rig).value(), 0);
}

void TestTransactionListScroll::keys()
{
    LedgerRig rig;
    rig.transact(40);
    focusList(rig);
    const auto goesTo = [&](Qt::Key key, int row) {
        rig.key(key);
        const QRect rect = rig.list().visualRect(rig.list().currentIndex());
        return ringed(rig) == LedgerRig::nameOf(39 - row)
               && rig.list().viewport()->rect().contains(rect);
    };
    QCOMPARE(ringed(rig), LedgerRig::nameOf(39));
    QVERIFY(goesTo(Qt::Key_Up, 0));
    QVERIFY(goesTo(Qt::Key_Down, 1));
    QVERIFY(goesTo(Qt::Key_End, 39));
    QVERIFY(goesTo(Qt::Key_Down, 39));
    QVERIFY(goesTo(Qt::Key_Up, 38));
    QVERIFY(goesTo(Qt::Key_Home, 0));
    for (int row = 1; row < 12; ++row)
        QVERIFY(goesTo(Qt::Key_Down, row));
    rig.key(Qt::Key_PageDown);
    QVERIFY(rig.list().currentIndex().row() > 13);
    // Letter keys, Left and Right do nothing.
    const QString before = ringed(rig);
    for (const Qt::Key key : {Qt::Key_P, Qt::Key_Left, Qt::Key_Right, Qt::Key_A})
        rig.key(key);
    QCOMPARE(ringed(rig), before);
    QCOMPARE(rig.opened, QStringList{});
}

void TestTransactionListScroll::keysOpenTheRingedRow()
{
    LedgerRig rig;
    rig.transact(5);
    focusList(rig);
    for (const Qt::Key key : {Qt::Key_Return, Qt::Key_Enter, Qt::Key_Space})
        rig.key(key);
    QCOMPARE(rig.opened,
             QStringList(3, QStringLiteral("https://xrplexplorer.com/tx/") + LedgerRig::nameOf(4)));
    // A click removes the ring, so Enter opens nothing.
    rig.click(rig.row(2));
    rig.opened.clear();
    QCOMPARE(ringed(rig), QString());
    rig.key(Qt::Key_Return);
    QCOMPARE(rig.opened, QStringList{});
    rig.key(Qt::Key_Down);
    QCOMPARE(ringed(rig), LedgerRig::nameOf(1));
}

void TestTransactionListScroll::keyboardStartsAtAVisibleRow()
{
    LedgerRig rig;
    rig.transact(40);
    wheel(rig, 3);
    const int scrolled = bar(rig).value();
    QVERIFY(scrolled > 4 * rowHeight);
    focusList(rig);
    QVERIFY(!ringed(rig).isEmpty());
    QVERIFY(bar(rig).value() <= scrolled && bar(rig).value() > scrolled - rowHeight);
}

void TestTransactionListScroll::focusReturnsWithTheWindow()
{
    LedgerRig rig;
    rig.transact(10);
    focusList(rig);
    rig.key(Qt::Key_Down);
    const QString row = ringed(rig);
    {
        QWidget other;
        other.show();
        other.activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(&other));
        QCOMPARE(ringed(rig), QString());
    }
    rig.window.activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(&rig.window));
    QCOMPARE(ringed(rig), row);
}

TIDEWICK_GUI_TEST_MAIN(TestTransactionListScroll)
#include "tst_transactionlist_scroll.moc"
