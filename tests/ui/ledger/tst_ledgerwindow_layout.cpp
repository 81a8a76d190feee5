// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "support/Surroundings.h"
#include "ui/DrawnTexts.h"
#include "ui/ledger/LedgerRig.h"

#include <QApplication>
#include <QLabel>
#include <QScrollBar>

using namespace tidewick;

/// The layout of the window's parts at all sizes.
class TestLedgerWindowLayout : public QObject
{
    Q_OBJECT

private slots:
    void fits_data();
    void fits();
    void fitsHugeFigures();
    void minimumSize_data();
    void minimumSize();
    void chartAndListTakeTheRemainingHeight();
    void airAboveTheBars_data();
    void airAboveTheBars();
    void wideRowsSpreadTheirColumns();
    void rightToLeft_data();
    void rightToLeft();
    void staysReadableOnAWideScreen();
    void followsTheFont();
    void footnote_data();
    void footnote();
};

namespace {

void setPoints(LedgerRig &rig, int points)
{
    QFont font = rig.window.font();
    font.setPointSize(points);
    rig.window.setFont(font);
}

QList<QWidget *> parts(const LedgerRig &rig)
{
    QList<QWidget *> parts;
    for (QWidget *part : rig.window.findChildren<QWidget *>(Qt::FindDirectChildrenOnly))
        if (part->isVisible())
            parts += part;
    return parts;
}

/// Describes the flaws of the window's parts and their texts; empty if there are none.
QString flaws(const LedgerRig &rig)
{
    const auto isCut = [](const QString &text) {
        return text.endsWith(u'…') && text != u"waiting…" && text != u"Connecting…"
               && text != u"Waiting for transactions…";
    };
    QStringList flaws;
    const QList<QWidget *> all = parts(rig);
    for (const QWidget *part : all) {
        if (!rig.window.rect().contains(part->geometry()))
            flaws += part->accessibleName() + QStringLiteral(" is not in the window");
        for (const QWidget *other : all)
            if (other != part && other->geometry().intersects(part->geometry()))
                flaws += part->accessibleName() + QStringLiteral(" on ") + other->accessibleName();
    }
    QList<QWidget *> painters = all;
    painters += rig.list().viewport();
    for (QWidget *part : painters) {
        const QList<DrawnText> texts = drawnTexts(*part);
        // Rows continue below the list's lower edge.
        const QRectF room = part == rig.list().viewport() ? QRectF(0, 0, part->width(), 9999)
                                                          : QRectF(part->rect());
        for (const DrawnText &text : texts) {
            if (isCut(text.text))
                flaws += QStringLiteral("cut: ") + text.text;
            if (!room.adjusted(0, -1, 0, 1).contains(text.rect))
                flaws += QStringLiteral("outside: ") + text.text;
            for (const DrawnText &other : texts)
                if (&other != &text && other.rect.adjusted(1, 1, -1, -1).intersects(text.rect))
                    flaws += text.text + QStringLiteral(" on ") + other.text;
        }
    }
    return flaws.join(u'\n');
}

} // namespace

void TestLedgerWindowLayout::fits_data()
{
    QTest::addColumn<QSize>("size");
    QTest::addColumn<int>("points");
    for (const QSize size :
         {QSize(640, 560), QSize(800, 780), QSize(1600, 1000), QSize(3840, 2160)})
        for (int points = 9; points <= 20; ++points)
            QTest::addRow("%d x %d, %d pt", size.width(), size.height(), points) << size << points;
}

void TestLedgerWindowLayout::fits()
{
    QFETCH(QSize, size);
    QFETCH(int, points);
    LedgerRig rig(size);
    setPoints(rig, points);
    QCOMPARE(flaws(rig), QString());
    rig.fill();
    QCOMPARE(rig.window.size(), size.expandedTo(rig.window.minimumSize()));
    QCOMPARE(flaws(rig), QString());
    rig.pointAt(rig.bar(0));
    QCOMPARE(flaws(rig), QString());
    // At least two transactions are visible.
    const QList<DrawnText> texts = drawnTexts(*rig.list().viewport());
    const QString second = rig.list().row(rig.list().model()->index(1, 0)).type;
    QVERIFY(std::any_of(texts.begin(), texts.end(), [&](const DrawnText &text) {
        return text.text == second && text.rect.bottom() <= rig.list().viewport()->height();
    }));
}

/// Figures larger than any real ledger's are elided and do not overlap their neighbours.
void TestLedgerWindowLayout::fitsHugeFigures()
{
    LedgerRig rig({640, 560});
    constexpr qint64 most = 9'007'199'254'740'991;
    rig.stream.close(most, most, 1);
    rig.pointAt(rig.bar(0));
    for (const int points : {10, 20}) {
        setPoints(rig, points);
        for (const QString &flaw : flaws(rig).split(u'\n', Qt::SkipEmptyParts))
            QVERIFY2(flaw.startsWith(QStringLiteral("cut: ")), qPrintable(flaw));
    }
}

void TestLedgerWindowLayout::minimumSize_data()
{
    QTest::addColumn<int>("points");
    for (const int points : {9, 10, 12, 15, 20})
        QTest::addRow("%d pt", points) << points;
}

void TestLedgerWindowLayout::minimumSize()
{
    QFETCH(int, points);
    LedgerRig rig;
    setPoints(rig, points);
    rig.fill();
    rig.window.resize(10, 10);
    QCOMPARE(rig.window.size(), rig.window.minimumSize());
    QCOMPARE(flaws(rig), QString());
    // At the usual font sizes, the window can be made as small as this.
    if (points <= 10)
        QCOMPARE(rig.window.minimumSize(), QSize(640, 560));
}

/// A third of the additional height goes to the chart, the rest to the list.
void TestLedgerWindowLayout::chartAndListTakeTheRemainingHeight()
{
    LedgerRig rig({800, 900});
    rig.fill();
    const QWidget &card = *rig.list().parentWidget();
    QMap<QWidget *, int> heights;
    for (QWidget *part : parts(rig))
        heights[part] = part->height();
    rig.window.resize(800, 1200);
    for (QWidget *part : parts(rig)) {
        const int grown = part == &rig.histogram() ? 100 : part == &card ? 200 : 0;
        QCOMPARE(part->height(), heights[part] + grown);
    }
    QVERIFY(rig.list().height() > card.height() - 60);
    // The list is never longer than its rows. The chart takes what is left.
    rig.transact(40);
    rig.window.resize(800, 4000);
    QTRY_COMPARE(rig.list().verticalScrollBar()->maximum(), 0);
    const QModelIndex last = rig.list().model()->index(39, 0);
    QVERIFY(rig.list().height() - rig.list().visualRect(last).bottom() < 20);
    QVERIFY(rig.histogram().height() > 1500);
}

void TestLedgerWindowLayout::airAboveTheBars_data()
{
    QTest::addColumn<QSize>("size");
    for (const QSize size : {QSize(640, 560), QSize(800, 780), QSize(1600, 1400)})
        QTest::addRow("%d x %d", size.width(), size.height()) << size;
}

/// Between the histogram's title and its highest bar.
void TestLedgerWindowLayout::airAboveTheBars()
{
    QFETCH(QSize, size);
    LedgerRig rig(size);
    rig.closeMany(60);
    const double title = drawnTexts(rig.histogram()).constFirst().ink.bottom();
    QVERIFY(rig.histogram().column(59).top() - title >= 15);
}

/// In a wide window, the account stays about halfway between the type and the result.
void TestLedgerWindowLayout::wideRowsSpreadTheirColumns()
{
    for (const int width : {1300, 3000}) {
        LedgerRig rig({width, 780});
        rig.transact(QStringLiteral("A"), QStringLiteral("Payment"),
                     QStringLiteral("tecUNFUNDED_OFFER"));
        const QList<DrawnText> row = drawnTexts(*rig.list().viewport());
        QCOMPARE(row.size(), 3);
        const double before = row.at(1).rect.left() - row.at(0).rect.right();
        const double after = row.at(2).rect.left() - row.at(1).rect.right();
        QVERIFY2(before < after && after < 1.6 * before,
                 qPrintable(QStringLiteral("%1: %2, %3").arg(width).arg(before).arg(after)));
    }
}

void TestLedgerWindowLayout::rightToLeft_data()
{
    fits_data();
}

/// Everything changes sides but the bars, whose time runs from left to right.
void TestLedgerWindowLayout::rightToLeft()
{
    QFETCH(QSize, size);
    QFETCH(int, points);
    LedgerRig rig(size);
    setPoints(rig, points);
    rig.fill();
    const auto lefts = [&] {
        QMap<QString, double> all;
        for (QWidget *part : parts(rig))
            for (const DrawnText &text : drawnTexts(*part))
                all[part->accessibleName() + text.text] = text.rect.left();
        return all;
    };
    const QMap<QString, double> before = lefts();
    const QRect bar = rig.histogram().column(7);
    rig.window.setLayoutDirection(Qt::RightToLeft);
    QCOMPARE(flaws(rig), QString());
    QCOMPARE(rig.histogram().column(7), bar);
    for (QWidget *part : parts(rig)) {
        for (const DrawnText &text : drawnTexts(*part)) {
            // These two stay one phrase; the footnote is centred.
            if (part->accessibleName().startsWith(QStringLiteral("Ledger "))
                || qobject_cast<QLabel *>(part))
                continue;
            const double left = part->width() - text.rect.right();
            QVERIFY2(std::abs(left - before[part->accessibleName() + text.text]) <= 2,
                     qPrintable(text.text));
        }
    }
    QVERIFY(rig.named("This ledger").x() > rig.named("Per second").x());
    QVERIFY(rig.named("Per second").x() > rig.named("Busiest").x());
    const QList<DrawnText> head = drawnTexts(rig.named("Ledger "));
    QCOMPARE(head.at(0).text, QStringLiteral("LIVE LEDGER"));
    QVERIFY(std::abs(head.at(2).rect.left() - head.at(1).rect.right()) <= 1);
    QVERIFY(std::abs(head.at(2).rect.right() - rig.named("Ledger ").width()) <= 2);
    QVERIFY(head.at(3).rect.right() < head.at(1).rect.left());

    // Rows begin at the right.
    const QList<DrawnText> rows = drawnTexts(*rig.list().viewport());
    QVERIFY(rows.at(0).rect.left() > rows.at(1).rect.right());
    rig.pointAt(rig.bar(0));
    QCOMPARE(flaws(rig), QString());
    rig.stream.fail();
    QCOMPARE(flaws(rig), QString());
}

void TestLedgerWindowLayout::staysReadableOnAWideScreen()
{
    LedgerRig rig({3840, 2160});
    rig.fill();
    for (const QWidget *part : parts(rig)) {
        QVERIFY(part->width() <= 1200);
        QVERIFY(part->y() > 0 && part->geometry().bottom() < 2160);
    }
    QCOMPARE(rig.histogram().geometry().center().x(), rig.window.rect().center().x());
}

void TestLedgerWindowLayout::followsTheFont()
{
    LedgerRig rig({1600, 2000});
    rig.fill();
    const auto widthOfTitle = [&] { return drawnTexts(rig.histogram()).constFirst().rect.width(); };
    const auto mark = [&] {
        const QImage row = rig.list()
                               .viewport()
                               ->grab(rig.list().visualRect(rig.list().model()->index(8, 0)))
                               .toImage();
        QRect green;
        for (int x = row.width() - 60; x < row.width(); ++x) {
            for (int y = 0; y < row.height(); ++y) {
                const QColor color = row.pixelColor(x, y);
                if (color.green() > color.red() + 60)
                    green |= QRect(x, y, 1, 1);
            }
        }
        return green.size();
    };
    setPoints(rig, 10);
    const double title = widthOfTitle();
    const QSize checkmark = mark();
    QVERIFY(checkmark.width() > 8 && checkmark.width() == checkmark.height());
    setPoints(rig, 20);
    QVERIFY(std::abs(widthOfTitle() - 2 * title) < title / 8);
    QVERIFY(std::abs(mark().width() - 2 * checkmark.width()) <= 3);
    setPoints(rig, 10);
    QCOMPARE(widthOfTitle(), title);
    QCOMPARE(mark(), checkmark);
}

void TestLedgerWindowLayout::footnote_data()
{
    QTest::addColumn<int>("width");
    QTest::addColumn<int>("lines");
    QTest::newRow("narrow") << 640 << 2;
    QTest::newRow("usual") << 800 << 1;
    QTest::newRow("wide") << 2000 << 1;
}

void TestLedgerWindowLayout::footnote()
{
    QFETCH(int, width);
    QFETCH(int, lines);
    const LedgerRig rig({width, 780});
    const auto *label = rig.window.findChild<QLabel *>();
    QCOMPARE(label->text().split(u'\n').size(), lines);
    QCOMPARE(label->text().replace(u'\n', u' '),
             QStringLiteral("Click a ledger or a transaction to open it on xrplexplorer.com. "
                            "Everything here comes from your node's own stream."));
    QCOMPARE(label->textFormat(), Qt::PlainText);
    QCOMPARE(label->geometry().center().x(), rig.window.rect().center().x());
    QCOMPARE(label->height(), lines * QFontMetrics(label->font()).height());
}

TIDEWICK_GUI_TEST_MAIN(TestLedgerWindowLayout)
#include "tst_ledgerwindow_layout.moc"
