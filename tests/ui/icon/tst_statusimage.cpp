// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "support/Surroundings.h"
#include "ui/icon/MarkBundle.h"
#include "ui/icon/StatusIcon.h"

#include <QApplication>
#include <QPainter>

using namespace tidewick;

namespace {

const QString pauseBadge = QStringLiteral("pause.fill");
const QString stopBadge = QStringLiteral("stop.fill");

} // namespace

class TestStatusImage : public QObject
{
    Q_OBJECT

private slots:
    void bareMark();
    void wideMarkKeepsItsAspect();
    void widthIsRoundedUp();
    void canvas_data();
    void canvas();
    void badgeIsRightOfTheMark_data();
    void badgeIsRightOfTheMark();
    void pixmapSizes_data();
    void pixmapSizes();
    void fitsAndCentres();
    void stopIsSharp_data();
    void stopIsSharp();
    void pauseIsSharp_data();
    void pauseIsSharp();
    void drawnForEachSize();
    void paintsAtItsOwnSize();
    void iconPaintsAtTheRatioOfItsTarget();
};

void TestStatusImage::bareMark()
{
    const MarkBundle bundle(MarkBundle::shipped());
    StatusIcon icon(bundle.bundle());
    const StatusImage &image = icon.composed(StatusIcon::badge(Phase::Full)).wide;
    QCOMPARE(image.size(), QSize(20, 16));
    // The ink touches all four sides, so no room is left for a badge.
    QCOMPARE(ink(image.rendered(QSize(200, 160), Qt::black)), QRect(0, 0, 200, 160));
}

void TestStatusImage::wideMarkKeepsItsAspect()
{
    const MarkBundle bundle(MarkBundle::block(90, 30));
    StatusIcon icon(bundle.bundle());
    QCOMPARE(icon.composed(std::nullopt).wide.size(), QSize(48, 16));
    const QImage drawn = icon.composed(std::nullopt).wide.rendered(QSize(48, 48), Qt::black);
    QCOMPARE(ink(drawn), QRect(0, 16, 48, 16));
}

void TestStatusImage::widthIsRoundedUp()
{
    const MarkBundle bundle(MarkBundle::block(41, 40)); // 16.4 points
    StatusIcon icon(bundle.bundle());
    QCOMPARE(icon.composed(std::nullopt).wide.size(), QSize(17, 16));
    QCOMPARE(icon.composed(pauseBadge).wide.size(), QSize(29, 16)); // 16.4 + 2 + 10
}

void TestStatusImage::canvas_data()
{
    QTest::addColumn<QString>("badge");
    for (const char *badge : {"pause.fill", "ellipsis", "arrow.down", "arrow.triangle.2.circlepath",
                              "stop.fill", "exclamationmark.triangle.fill"})
        QTest::newRow(badge) << badge;
}

void TestStatusImage::canvas()
{
    QFETCH(QString, badge);
    const MarkBundle bundle(MarkBundle::shipped());
    StatusIcon icon(bundle.bundle());
    // The same for all, so that the mark keeps its position and size when the badge changes.
    QCOMPARE(icon.composed(badge).wide.size(), QSize(32, 16));
    // The badge's ink is centred in its 10 points, and within the middle 10 of the height.
    const QImage drawn = icon.composed(badge).wide.rendered(QSize(320, 160), Qt::black);
    const QRect found = ink(drawn, QRect(200, 0, 120, 160));
    QVERIFY(found.left() >= 220 && found.left() <= 225);
    QVERIFY(std::abs((found.left() - 220) - (319 - found.right())) <= 1);
    QVERIFY(found.top() >= 30 && found.bottom() < 130);
}

void TestStatusImage::badgeIsRightOfTheMark_data()
{
    QTest::addColumn<QSize>("badge");
    QTest::addColumn<QRect>("expected"); // at four pixels per point
    QTest::newRow("even") << QSize(10, 8) << QRect(88, 16, 40, 32);
    QTest::newRow("odd") << QSize(7, 9) << QRect(88, 14, 28, 36);
    QTest::newRow("wide and short") << QSize(14, 3) << QRect(88, 26, 56, 12);
    QTest::newRow("as high as the mark") << QSize(4, 16) << QRect(88, 0, 16, 64);
}

void TestStatusImage::badgeIsRightOfTheMark()
{
    QFETCH(QSize, badge);
    QFETCH(QRect, expected);
    const MarkBundle bundle(MarkBundle::block(20, 16));
    const TemporaryFolder symbols;
    writeFile(symbols.path() / "stop.fill.svg", MarkBundle::block(badge.width(), badge.height()));
    StatusIcon icon(bundle.bundle(), QString::fromStdString(symbols.path().string()));

    const StatusImage &image = icon.composed(stopBadge).wide;
    QCOMPARE(image.size(), QSize(22 + badge.width(), 16));
    const QImage drawn = image.rendered(image.size() * 4, Qt::black);
    QCOMPARE(ink(drawn, QRect(0, 0, 84, 64)), QRect(0, 0, 80, 64));
    QCOMPARE(ink(drawn, QRect(84, 0, drawn.width() - 84, 64)), expected);
}

void TestStatusImage::pixmapSizes_data()
{
    QTest::addColumn<int>("size");
    QTest::addColumn<qreal>("ratio");
    for (const int size : {16, 22, 24, 32, 48, 64})
        for (const qreal ratio : {1.0, 1.25, 1.5, 2.0, 3.0})
            QTest::addRow("%d at %g", size, ratio) << size << ratio;
}

void TestStatusImage::pixmapSizes()
{
    QFETCH(int, size);
    QFETCH(qreal, ratio);
    const MarkBundle bundle(MarkBundle::shipped());
    StatusIcon icon(bundle.bundle());
    for (const StatusIcon::Badge &badge : {StatusIcon::Badge(), StatusIcon::Badge(pauseBadge)}) {
        const QPixmap pixmap = icon.image(badge).pixmap(QSize(size, size), ratio);
        QCOMPARE(pixmap.size(), (QSizeF(size, size) * ratio).toSize());
        QVERIFY(!ink(pixmap.toImage()).isEmpty());
    }
}

void TestStatusImage::fitsAndCentres()
{
    const MarkBundle bundle(MarkBundle::block(20, 16));
    StatusIcon icon(bundle.bundle());
    const QImage drawn = icon.composed(std::nullopt).wide.rendered(QSize(60, 60), Qt::black);
    QCOMPARE(ink(drawn), QRect(0, 6, 60, 48));
    QCOMPARE(ink(icon.image(std::nullopt).pixmap(QSize(60, 16), 1.0).toImage()),
             QRect(20, 0, 20, 16));
    QVERIFY(icon.image(std::nullopt).pixmap(QSize(0, 0), 1.0).isNull());
}

void TestStatusImage::stopIsSharp_data()
{
    pixmapSizes_data();
}

void TestStatusImage::stopIsSharp()
{
    QFETCH(int, size);
    QFETCH(qreal, ratio);
    const MarkBundle bundle(MarkBundle::shipped());
    StatusIcon icon(bundle.bundle());
    const QSize pixels = (QSizeF(size, size) * ratio).toSize();
    const QImage drawn = icon.composed(stopBadge).wide.rendered(pixels, Qt::black);
    const int half = drawn.width() * 21 / 32; // between mark and badge
    const QRect square = ink(drawn, QRect(half, 0, drawn.width() - half, drawn.height()));
    QVERIFY(square.width() >= 5);
    QCOMPARE(square.width(), square.height());

    // Along its centre lines, it is fully opaque inside and fully transparent outside.
    const QPoint middle = square.center();
    for (int x = half; x < drawn.width(); ++x)
        QCOMPARE(drawn.pixelColor(x, middle.y()).alpha(),
                 x >= square.left() && x <= square.right() ? 255 : 0);
    for (int y = 0; y < drawn.height(); ++y)
        QCOMPARE(drawn.pixelColor(middle.x(), y).alpha(),
                 y >= square.top() && y <= square.bottom() ? 255 : 0);
}

void TestStatusImage::pauseIsSharp_data()
{
    pixmapSizes_data();
}

void TestStatusImage::pauseIsSharp()
{
    QFETCH(int, size);
    QFETCH(qreal, ratio);
    const MarkBundle bundle(MarkBundle::shipped());
    StatusIcon icon(bundle.bundle());
    const QSize pixels = (QSizeF(size, size) * ratio).toSize();
    const QImage drawn = icon.composed(pauseBadge).wide.rendered(pixels, Qt::black);
    const int half = drawn.width() * 21 / 32;
    const QRect bars = ink(drawn, QRect(half, 0, drawn.width() - half, drawn.height()));
    const auto alpha = [&](int x, int y) { return drawn.pixelColor(x, y).alpha(); };
    const int y = bars.center().y();

    // Two bars, fully opaque from their first row to their last, and a visible gap.
    for (const int x : {bars.left(), bars.right()}) {
        QCOMPARE(alpha(x, bars.top()), 255);
        QCOMPARE(alpha(x, bars.bottom()), 255);
        QCOMPARE(alpha(x, bars.top() - 1), 0);
        QCOMPARE(alpha(x, bars.bottom() + 1), 0);
    }
    QCOMPARE(alpha(bars.left() - 1, y), 0);
    QCOMPARE(alpha(bars.center().x(), y), 0);

    // Each inner edge blurs at most one pixel, and none if the width is a multiple of three.
    int partial = 0;
    for (int x = bars.left(); x <= bars.right(); ++x)
        if (alpha(x, y) != 0 && alpha(x, y) != 255)
            ++partial;
    QVERIFY(partial <= (bars.width() % 3 == 0 ? 0 : 2));
}

void TestStatusImage::drawnForEachSize()
{
    const MarkBundle bundle(MarkBundle::shipped());
    StatusIcon icon(bundle.bundle());
    const QImage small = picture(icon.image(pauseBadge), 22);
    const QImage large = picture(icon.image(pauseBadge), 66);
    QVERIFY(small.scaled(66, 66, Qt::IgnoreAspectRatio, Qt::SmoothTransformation) != large);
    QVERIFY(large.scaled(22, 22, Qt::IgnoreAspectRatio, Qt::SmoothTransformation) != small);
}

void TestStatusImage::paintsAtItsOwnSize()
{
    const MarkBundle bundle(MarkBundle::block(20, 16));
    StatusIcon icon(bundle.bundle());
    QImage target(100, 60, QImage::Format_ARGB32_Premultiplied);
    target.setDevicePixelRatio(2);
    target.fill(Qt::transparent);
    QPainter painter(&target);
    icon.composed(stopBadge).wide.paint(painter, QPointF(5, 4), QColor(200, 30, 40));
    painter.end();
    QCOMPARE(ink(target, QRect(0, 0, 52, 60)), QRect(10, 8, 40, 32));
    // The square leaves half a point free on each side.
    QCOMPARE(ink(target, QRect(52, 0, 48, 60)), QRect(55, 15, 18, 18));
    QCOMPARE(target.pixelColor(64, 24), QColor(200, 30, 40));
}

void TestStatusImage::iconPaintsAtTheRatioOfItsTarget()
{
    const MarkBundle bundle(MarkBundle::block(16, 16));
    StatusIcon icon(bundle.bundle());
    QImage target(90, 90, QImage::Format_ARGB32_Premultiplied);
    target.setDevicePixelRatio(3);
    target.fill(Qt::transparent);
    QPainter painter(&target);
    icon.image(std::nullopt).paint(&painter, QRect(3, 3, 22, 22));
    painter.end();
    QCOMPARE(ink(target), QRect(9, 9, 66, 66));
}

TIDEWICK_GUI_TEST_MAIN(TestStatusImage)
#include "tst_statusimage.moc"
