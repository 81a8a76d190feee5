// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "support/Surroundings.h"
#include "ui/Colors.h"
#include "ui/DrawnTexts.h"
#include "ui/ledger/LedgerDrawing.h"
#include "ui/ledger/LedgerRig.h"

#include <QApplication>

using namespace tidewick;

/// The bars and the line at their average, pixel by pixel.
class TestLedgerBars : public QObject
{
    Q_OBJECT

private slots:
    void barsAreInProportion();
    void barsAreRoundAtTheTop();
    void averageLine_data();
    void averageLine();
    void ledgersWithoutTransactions();
    void standOut_data();
    void standOut();
};

namespace {

QImage picture(QWidget &widget)
{
    return widget.grab().toImage();
}

/// The y coordinates of the pixels in column `x` that have nearly that colour, from top to bottom.
QList<int> pointsOf(const QImage &image, int x, const QColor &color)
{
    QList<int> points;
    for (int y = 0; y < image.height(); ++y)
        if (distance(image.pixelColor(x, y), color) <= 6)
            points += y;
    return points;
}

QColor barColor(const Palette &colors)
{
    return QColor(LedgerDrawing::bar(colors).rgb());
}

} // namespace

void TestLedgerBars::barsAreInProportion()
{
    LedgerRig rig;
    const QList<qint64> counts{0, 1, 100, 250, 500, 999, 1000};
    for (const qint64 count : counts)
        rig.close(count);
    const Palette colors({false});
    const QImage image = picture(rig.histogram());
    const int height = rig.histogram().column(0).height();
    for (qsizetype i = 0; i < counts.size(); ++i) {
        const QRect column = rig.histogram().column(i);
        int top = column.bottom();
        while (image.pixelColor(column.center().x(), top) != colors.surface && top >= column.top())
            --top;
        const int drawn = column.bottom() - top;
        const int expected = std::max(2, qRound(height * double(counts.at(i)) / 1000));
        // The average line may coincide with the top of a bar.
        QVERIFY2(std::abs(drawn - expected) <= 1, qPrintable(QString::number(counts.at(i))));
    }
    QCOMPARE(image.pixelColor(rig.histogram().column(6).center()), barColor(colors));
}

void TestLedgerBars::barsAreRoundAtTheTop()
{
    LedgerRig rig;
    rig.close({100, 50});
    const Palette colors({false});
    const QImage image = picture(rig.histogram());
    const QRect bar = rig.histogram().column(0);
    QCOMPARE(image.pixelColor(bar.center().x(), bar.top()), barColor(colors));
    for (const int x : {bar.left(), bar.right()}) {
        QVERIFY(distance(image.pixelColor(x, bar.top()), colors.surface) < 90);
        QCOMPARE(image.pixelColor(x, bar.top() + 4), barColor(colors));
        QCOMPARE(image.pixelColor(x, bar.bottom() - 1), barColor(colors));
    }
    QCOMPARE(image.pixelColor(bar.left() - 1, bar.center().y()), colors.surface);
}

void TestLedgerBars::averageLine_data()
{
    QTest::addColumn<QList<qint64>>("counts");
    QTest::addColumn<double>("share");
    QTest::newRow("one") << QList<qint64>{5} << 1.0;
    QTest::newRow("half") << QList<qint64>{0, 100} << 0.5;
    QTest::newRow("all equal") << QList<qint64>(60, 137) << 1.0;
    QTest::newRow("one of sixty") << (QList<qint64>(59, 0) + QList<qint64>{600}) << 1 / 60.0;
    QTest::newRow("with a fraction") << QList<qint64>{1, 2, 2} << 5 / 6.0;
    QTest::newRow("none") << QList<qint64>{0, 0, 0} << -1.0;
}

void TestLedgerBars::averageLine()
{
    QFETCH(QList<qint64>, counts);
    QFETCH(double, share);
    for (const bool dark : {false, true}) {
        LedgerRig rig;
        rig.window.setScheme({dark});
        for (const qint64 count : counts)
            rig.close(count);
        const Palette colors({dark});
        QColor accent = colors.thread;
        accent.setAlphaF(0.8F);
        const QColor line = over(accent, colors.ink);
        const QRect chart = rig.histogram().column(counts.size() - 1);
        const QImage image = picture(rig.histogram());
        // In the gap before the last bar.
        const auto points = pointsOf(image, chart.left() - 1, line);
        if (share < 0) {
            QCOMPARE(points, QList<int>{});
            continue;
        }
        QCOMPARE(points.size(), 1);
        const double expected = chart.top() + (1 - share) * chart.height();
        QVERIFY(std::abs(points.constFirst() - expected) <= 1);
        // The line reaches from one end of the chart to the other.
        const int left = qRound(drawnTexts(rig.histogram()).constFirst().rect.left());
        QVERIFY(pointsOf(image, left, line).contains(points.constFirst()) || counts.size() == 60);
    }
}

void TestLedgerBars::ledgersWithoutTransactions()
{
    LedgerRig rig;
    for (int i = 0; i < 60; ++i)
        rig.close(0);
    const QImage image = picture(rig.histogram());
    const QColor surface = Palette({false}).surface;
    for (const qsizetype i : {0, 30, 59}) {
        const QRect column = rig.histogram().column(i);
        QVERIFY(image.pixelColor(column.center().x(), column.bottom() - 1) != surface);
        QCOMPARE(image.pixelColor(column.center().x(), column.bottom() - 3), surface);
    }
}

void TestLedgerBars::standOut_data()
{
    QTest::addColumn<bool>("dark");
    QTest::newRow("light") << false;
    QTest::newRow("dark") << true;
}

/// Bars, average and baseline against the card, and the bar under the pointer against the others.
void TestLedgerBars::standOut()
{
    QFETCH(bool, dark);
    LedgerRig rig;
    rig.window.setScheme({dark});
    rig.close({100, 40, 40, 40});
    rig.pointAt(rig.bar(2));
    const QImage image = picture(rig.histogram());
    const QColor card = Palette({dark}).surface;
    const auto foot = [&](qsizetype place) {
        const QRect column = rig.histogram().column(place);
        return image.pixelColor(column.center().x(), column.bottom() - 4);
    };
    QVERIFY(contrast(foot(1), card) >= 3);
    QVERIFY(contrast(foot(2), card) >= 3);
    QVERIFY(contrast(foot(2), foot(1)) >= 2);
    // To the left of the first bar, only the lines remain.
    const QRect first = rig.histogram().column(0);
    QList<QColor> lines;
    for (int y = first.top(); y <= first.bottom(); ++y)
        if (const QColor color = image.pixelColor(first.left() - 8, y); color != card)
            lines += color;
    QCOMPARE(lines.size(), 2);
    for (const QColor &line : lines)
        QVERIFY(contrast(line, card) >= 3);
    QVERIFY(distance(lines.first(), foot(1)) > 100);
    QVERIFY(distance(lines.first(), lines.last()) > 60);

    // The same once they are old.
    rig.stream.fail();
    rig.pointAt({2, 2});
    const QImage old = picture(rig.histogram());
    const QRect column = rig.histogram().column(1);
    const QColor bar = old.pixelColor(column.center().x(), column.bottom() - 4);
    QVERIFY(contrast(bar, card) >= 3);
    QVERIFY(bar.hsvSaturation() < foot(1).hsvSaturation() / 3);
}

TIDEWICK_GUI_TEST_MAIN(TestLedgerBars)
#include "tst_ledgerbars.moc"
