// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "support/Surroundings.h"
#include "ui/ledger/HistogramTexts.h"

#include <QApplication>

using namespace tidewick;

/// Pointing at and clicking the bars, and how new ones slide in.
class TestLedgerHistogram : public QObject
{
    Q_OBJECT

private slots:
    void columns_data();
    void columns();
    void describesTheBarUnderThePointer();
    void quickMoves();
    void ledgersArriveUnderAStillPointer();
    void barsMoveUnderAStillPointer();
    void clicks();
    void clickOpensThePressedLedger();
    void clickOnALedgerThatIsGone();
    void easesIn();
    void severalAtOnceDoNotEase();
    void doesNotAnimateWhileHidden();
};

namespace {

bool isHand(const LedgerRig &rig)
{
    return rig.histogram().cursor().shape() == Qt::PointingHandCursor;
}

/// The indices of the highlighted bars. Their ledgers must have transactions.
QList<qsizetype> lit(const LedgerRig &rig)
{
    const QImage screen = rig.screen();
    QList<qsizetype> lit;
    for (qsizetype i = 0; i < rig.histogram().ledgers().size(); ++i) {
        const QRect column = rig.histogram().column(i);
        const QPoint foot(column.center().x(), column.bottom() - 2);
        if (screen.pixelColor(rig.histogram().mapTo(&rig.window, foot)) == Palette({false}).link)
            lit += i;
    }
    return lit;
}

/// From the last bar's right edge to the chart's, which has the same margin as the title.
int distanceFromEdge(const LedgerRig &rig)
{
    const QRect column = rig.histogram().column(rig.histogram().ledgers().size() - 1);
    const int margin = qRound(drawnTexts(rig.histogram()).constFirst().rect.left());
    return rig.histogram().width() - margin - 1 - column.right();
}

} // namespace

void TestLedgerHistogram::columns_data()
{
    QTest::addColumn<int>("width");
    QTest::addColumn<int>("ledgers");
    for (const int width : {640, 800, 3840})
        for (const int ledgers : {1, 2, 59, 60, 61, 75})
            QTest::addRow("%d in %d", ledgers, width) << width << ledgers;
}

void TestLedgerHistogram::columns()
{
    QFETCH(int, width);
    QFETCH(int, ledgers);
    LedgerRig rig({width, 780});
    rig.closeMany(60);
    const QRect first = rig.histogram().column(0);
    const QRect last = rig.histogram().column(59);
    QVERIFY(std::abs(first.left() - (rig.histogram().width() - 1 - last.right())) <= 1);

    LedgerRig other({width, 780});
    other.closeMany(ledgers);
    const qsizetype bars = std::min(ledgers, 60);
    QCOMPARE(other.histogram().ledgers().size(), bars);
    // The newest bar is at the right end, however many there are.
    for (qsizetype i = 0; i < bars; ++i)
        QCOMPARE(other.histogram().column(i), rig.histogram().column(60 - bars + i));
    for (qsizetype i = 1; i < bars; ++i) {
        const int gap =
            other.histogram().column(i).left() - other.histogram().column(i - 1).right() - 1;
        QCOMPARE(gap, 2);
        QVERIFY(other.histogram().column(i).width() >= 5);
    }
}

void TestLedgerHistogram::describesTheBarUnderThePointer()
{
    LedgerRig rig;
    rig.closeMany(60);
    const QString summary = QStringLiteral("last 60 ledgers · avg 505");
    QCOMPARE(label(rig), summary);
    QCOMPARE(lit(rig), QList<qsizetype>{});
    QVERIFY(!isHand(rig));
    for (const qsizetype place : {59, 0, 30}) {
        rig.pointAt(rig.bar(place));
        QCOMPARE(label(rig), labelOf(rig, place));
        QCOMPARE(lit(rig), QList<qsizetype>{place});
        QVERIFY(isHand(rig));
    }
    // The whole column counts, however low its bar; the space around it does not.
    const QRect column = rig.histogram().column(0);
    for (const QPoint point : {column.topLeft(), column.bottomRight()}) {
        rig.pointAt(rig.histogram().mapTo(&rig.window, point));
        QCOMPARE(label(rig), labelOf(rig, 0));
    }
    for (const QPoint point : {column.topLeft() - QPoint(0, 1), column.bottomLeft() + QPoint(0, 1),
                               column.topLeft() - QPoint(1, 0)}) {
        rig.pointAt(rig.histogram().mapTo(&rig.window, point));
        QCOMPARE(label(rig), summary);
        QCOMPARE(lit(rig), QList<qsizetype>{});
        QVERIFY(!isHand(rig));
    }
    rig.pointAt(rig.bar(30));
    rig.pointAt({2, 2});
    QCOMPARE(label(rig), summary);
}

/// Between two bars, there is no position at which neither is pointed at.
void TestLedgerHistogram::quickMoves()
{
    LedgerRig rig;
    rig.closeMany(60);
    const QPoint left = rig.bar(20);
    const QPoint right = rig.bar(23);
    QStringList seen;
    for (int x = left.x(); x <= right.x(); ++x) {
        rig.pointAt({x, left.y()});
        if (seen.isEmpty() || label(rig) != seen.constLast())
            seen += label(rig);
    }
    QCOMPARE(seen,
             (QStringList{labelOf(rig, 20), labelOf(rig, 21), labelOf(rig, 22), labelOf(rig, 23)}));
    rig.pointAt(rig.bar(5));
    rig.pointAt(rig.bar(50));
    QCOMPARE(label(rig), labelOf(rig, 50));
    QCOMPARE(lit(rig), QList<qsizetype>{50});
}

void TestLedgerHistogram::ledgersArriveUnderAStillPointer()
{
    LedgerRig rig;
    rig.closeMany(60);
    rig.pointAt(rig.bar(30));
    const QString before = label(rig);
    rig.close(77);
    QVERIFY(label(rig) != before);
    QCOMPARE(label(rig), labelOf(rig, 30));
    QCOMPARE(lit(rig), QList<qsizetype>{30});

    LedgerRig few;
    few.close(10);
    few.pointAt(few.bar(0) - QPoint(40, 0));
    QCOMPARE(label(few), QStringLiteral("last 1 ledgers · avg 10"));
    few.closeMany(10);
    QVERIFY(label(few).startsWith(u'#'));
    QVERIFY(isHand(few));
}

void TestLedgerHistogram::barsMoveUnderAStillPointer()
{
    LedgerRig rig({1000, 780});
    rig.closeMany(60);
    const QPoint pointer = rig.bar(59);
    rig.pointAt(pointer);
    rig.window.resize(1100, 780);
    const auto under = [&] {
        const QPoint point = rig.histogram().mapFrom(&rig.window, pointer);
        for (qsizetype i = 0; i < 60; ++i)
            if (rig.histogram().column(i).adjusted(0, 0, 2, 0).contains(point))
                return labelOf(rig, i);
        return QString();
    };
    QCOMPARE(label(rig), under());
    QVERIFY(label(rig) != labelOf(rig, 59));
    rig.window.resize(900, 780);
    QCOMPARE(label(rig), QStringLiteral("last 60 ledgers · avg 505"));
    QVERIFY(!isHand(rig));
}

void TestLedgerHistogram::clicks()
{
    LedgerRig rig;
    rig.closeMany(60);
    rig.click(rig.bar(7));
    QCOMPARE(rig.opened, QStringList{pageOf(LedgerRig::firstLedger + 7)});
    rig.opened.clear();

    rig.press(rig.bar(7));
    rig.release(rig.bar(8));
    rig.press(rig.bar(7));
    rig.release({2, 2});
    rig.press({2, 2});
    rig.release(rig.bar(7));
    rig.click(rig.bar(0) - QPoint(6, 0));
    for (const Qt::MouseButton button : {Qt::RightButton, Qt::MiddleButton})
        QTest::mouseClick(rig.window.windowHandle(), button, {}, rig.bar(7));
    QTest::mousePress(rig.window.windowHandle(), Qt::RightButton, {}, rig.bar(7));
    rig.release(rig.bar(7));
    QCOMPARE(rig.opened, QStringList{});

    rig.opens = false;
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression(QStringLiteral("nothing .* opens")));
    rig.click(rig.bar(9));
    QCOMPARE(rig.opened.size(), 1);
}

void TestLedgerHistogram::clickOpensThePressedLedger()
{
    LedgerRig rig;
    rig.closeMany(60);
    const QPoint place = rig.bar(30);
    rig.press(place);
    rig.close(5);
    rig.close(6);
    rig.release(place);
    QCOMPARE(rig.opened, QStringList{pageOf(LedgerRig::firstLedger + 30)});
    rig.opened.clear();
    // The same if the pointer followed the bar.
    rig.press(place);
    const qint64 pressed = rig.histogram().ledgers().at(30).id;
    rig.close(7);
    rig.release(rig.bar(29));
    QCOMPARE(rig.opened, QStringList{pageOf(pressed)});
}

void TestLedgerHistogram::clickOnALedgerThatIsGone()
{
    LedgerRig rig;
    rig.closeMany(60);
    rig.press(rig.bar(0));
    rig.close(5);
    rig.release(rig.bar(0));
    QCOMPARE(rig.opened, QStringList{pageOf(LedgerRig::firstLedger)});
}

void TestLedgerHistogram::easesIn()
{
    LedgerRig rig;
    rig.closeMany(60);
    QCOMPARE(distanceFromEdge(rig), 0);
    rig.window.setStill(false);
    rig.pointAt(rig.bar(30));
    rig.close(1000);
    // It slides in from beyond the edge, and the pointer is still at the same ledger.
    QVERIFY(distanceFromEdge(rig) < -8);
    QCOMPARE(label(rig), labelOf(rig, 29));
    int before = distanceFromEdge(rig);
    const EventCount frames(&rig.histogram(), QEvent::Paint);
    while (distanceFromEdge(rig) < 0) {
        QVERIFY(distanceFromEdge(rig) >= before);
        before = distanceFromEdge(rig);
        QVERIFY(frames.count() < 1000);
        QTest::qWait(1);
    }
    QVERIFY(frames.count() >= 2);
    QTRY_COMPARE(label(rig), labelOf(rig, 30));
    QTRY_COMPARE(lit(rig), QList<qsizetype>{30});
}

void TestLedgerHistogram::severalAtOnceDoNotEase()
{
    LedgerRig rig;
    rig.closeMany(30);
    rig.window.setStill(false);
    // A backfilled ledger is added at the old end.
    rig.stream.say(QStringLiteral(R"({"id":1001,"result":{"ledger":{"ledger_index":"98765000",
        "close_time":799999996,"transactions":["A"]}}})"));
    QCOMPARE(rig.histogram().ledgers().size(), 31);
    QCOMPARE(distanceFromEdge(rig), 0);
    rig.close(5);
    QVERIFY(distanceFromEdge(rig) < 0);
    rig.window.setStill(true);
    QCOMPARE(distanceFromEdge(rig), 0);
    rig.close(6);
    QCOMPARE(distanceFromEdge(rig), 0);
}

void TestLedgerHistogram::doesNotAnimateWhileHidden()
{
    LedgerRig rig;
    rig.closeMany(60);
    rig.window.setStill(false);
    rig.close(5);
    rig.window.hide();
    QCOMPARE(distanceFromEdge(rig), 0);
    rig.window.show();
    rig.window.showMinimized();
    QTRY_VERIFY(rig.window.isMinimized());
    rig.close(6);
    QCOMPARE(distanceFromEdge(rig), 0);
    QCOMPARE(rig.histogram().ledgers().constLast().txns, 6);
}

TIDEWICK_GUI_TEST_MAIN(TestLedgerHistogram)
#include "tst_ledgerhistogram.moc"
