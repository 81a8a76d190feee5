// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "support/Surroundings.h"
#include "ui/Colors.h"
#include "ui/icon/MarkBundle.h"
#include "ui/icon/StatusIcon.h"

#include <QApplication>
#include <QPainter>

#include <cmath>

using namespace tidewick;

namespace {

const QStringList badges{
    QStringLiteral("pause.fill"), QStringLiteral("ellipsis"),
    QStringLiteral("arrow.down"), QStringLiteral("arrow.triangle.2.circlepath"),
    QStringLiteral("stop.fill"),  QStringLiteral("exclamationmark.triangle.fill"),
};

constexpr auto sizes = {16, 22, 24, 32, 48, 64};

/// What a picture shows of mark and badge, without their outlines. Its colours have to be white on
/// black; then the colour of a pixel is the coverage.
QImage withoutOutlines(const QImage &picture)
{
    return picture.convertToFormat(QImage::Format_ARGB32_Premultiplied)
        .convertToFormat(QImage::Format_RGB32);
}

class Rig
{
public:
    explicit Rig(const QColor &color) { m_icon.setColor(color); }

    QImage drawn(const StatusIcon::Badge &badge, int size)
    {
        return picture(m_icon.image(badge), size);
    }
    StatusIcon &icon() { return m_icon; }

private:
    MarkBundle m_bundle{MarkBundle::shipped()};
    StatusIcon m_icon{m_bundle.bundle()};
};

/// The part of a picture that a badge and its surroundings may take.
QRect corner(int size)
{
    const int outline = SquareStatusImage::outlineWidth(size);
    const int inside = size - 2 * outline;
    return {QPoint(outline + inside * 8 / 20, outline + inside * 9 / 20),
            QPoint(size - 1, size - 1)};
}

/// Where the coverage is at least a quarter.
QRect covered(const QImage &coverage, const QRect &within)
{
    QRect found;
    for (int y = within.top(); y <= within.bottom(); ++y)
        for (int x = within.left(); x <= within.right(); ++x)
            if (qRed(coverage.pixel(x, y)) >= 64)
                found |= QRect(x, y, 1, 1);
    return found;
}

/// The share of columns and that of rows, whichever is less, in which the ink or its outline can be
/// told from the panel by anyone.
double legible(const QImage &picture, const QRect &ink, const QColor &panel)
{
    constexpr double enough = 4.5;
    QImage onPanel(picture.size(), QImage::Format_RGB32);
    onPanel.fill(panel);
    QPainter(&onPanel).drawImage(0, 0, picture);
    QSet<int> columns;
    QSet<int> rows;
    const int outline = SquareStatusImage::outlineWidth(picture.width());
    for (int y = ink.top() - outline; y <= ink.bottom() + outline; ++y) {
        for (int x = ink.left() - outline; x <= ink.right() + outline; ++x) {
            if (contrast(onPanel.pixelColor(x, y), panel) >= enough) {
                columns.insert(x);
                rows.insert(y);
            }
        }
    }
    return std::min(double(columns.size()) / ink.width(), double(rows.size()) / ink.height());
}

} // namespace

/// Tests the pictures for the square slots of a tray.
class TestSquareStatusImage : public QObject
{
    Q_OBJECT

private slots:
    void badgesLeaveTheMarkInPlace_data();
    void badgesLeaveTheMarkInPlace();
    void badgesFillTheCorner_data();
    void badgesFillTheCorner();
    void badgesAreApartFromTheMark_data();
    void badgesAreApartFromTheMark();
    void badgesDiffer();
    void straightEdgesAreSharp_data();
    void straightEdgesAreSharp();
    void standsOutOnAnyPanel_data();
    void standsOutOnAnyPanel();
    void lowerWaveStandsOut_data();
    void lowerWaveStandsOut();
    void slotsThatAreNearlySquare();
    void tinySlots();
};

void TestSquareStatusImage::badgesLeaveTheMarkInPlace_data()
{
    QTest::addColumn<int>("size");
    for (const int size : sizes)
        QTest::addRow("%d", size) << size;
}

void TestSquareStatusImage::badgesLeaveTheMarkInPlace()
{
    QFETCH(int, size);
    Rig rig(Qt::white);
    const QImage bare = withoutOutlines(rig.drawn(std::nullopt, size));
    const QRect mark = covered(bare, bare.rect());
    const int inside = size - 2 * SquareStatusImage::outlineWidth(size);
    QVERIFY(std::abs(mark.width() - inside) <= 1);
    QVERIFY(std::abs(mark.height() - inside * 16 / 20) <= 1);
    for (const QString &badge : badges) {
        const QImage drawn = withoutOutlines(rig.drawn(badge, size));
        for (int y = 0; y < size; ++y)
            for (int x = 0; x < size; ++x)
                if (!corner(size).contains(x, y))
                    QVERIFY(std::abs(qRed(drawn.pixel(x, y)) - qRed(bare.pixel(x, y))) <= 2);
    }
}

void TestSquareStatusImage::badgesFillTheCorner_data()
{
    badgesLeaveTheMarkInPlace_data();
}

void TestSquareStatusImage::badgesFillTheCorner()
{
    QFETCH(int, size);
    Rig rig(Qt::white);
    const int end = size - 1 - SquareStatusImage::outlineWidth(size);
    for (const QString &badge : badges) {
        const QImage drawn = withoutOutlines(rig.drawn(badge, size));
        // Right of what is left of the lower wave, and below the upper one.
        const QRect found =
            covered(drawn, {QPoint(size - 1 - size / 2, corner(size).top() + 1), QPoint(end, end)});
        QCOMPARE(found.right(), end);
        QVERIFY(found.width() * 22 >= size * 9);
        if (badge == QLatin1String("ellipsis"))
            continue; // less high than wide
        QCOMPARE(found.bottom(), end);
        QVERIFY(found.height() * 22 >= size * 9);
    }
}

/// At 16 pixels, only the outlines keep them apart.
void TestSquareStatusImage::badgesAreApartFromTheMark_data()
{
    QTest::addColumn<int>("size");
    for (const int size : {22, 24, 32, 48, 64})
        QTest::addRow("%d", size) << size;
}

/// Everything that is reached from a badge without crossing transparent pixels is in the corner.
void TestSquareStatusImage::badgesAreApartFromTheMark()
{
    QFETCH(int, size);
    Rig rig(Qt::black);
    for (const QString &badge : badges) {
        const QImage drawn = rig.drawn(badge, size);
        QList<QPoint> toVisit;
        for (int y = size * 6 / 10; y < size; ++y)
            for (int x = size * 6 / 10; x < size; ++x)
                if (drawn.pixelColor(x, y).alpha() >= 128)
                    toVisit.append({x, y});
        QVERIFY(!toVisit.isEmpty());
        QSet<std::pair<int, int>> visited;
        while (!toVisit.isEmpty()) {
            const QPoint at = toVisit.takeLast();
            if (!drawn.rect().contains(at) || drawn.pixelColor(at).alpha() < 128
                || visited.contains({at.x(), at.y()}))
                continue;
            visited.insert({at.x(), at.y()});
            // At 64 pixels, the outline of the dots is one pixel beyond what is cut out.
            QVERIFY(corner(size).adjusted(-1, 0, 0, 0).contains(at));
            for (const QPoint step : {QPoint(1, 0), QPoint(-1, 0), QPoint(0, 1), QPoint(0, -1)})
                toVisit.append(at + step);
        }
    }
}

void TestSquareStatusImage::badgesDiffer()
{
    Rig rig(Qt::white);
    for (const QString &one : badges) {
        for (const QString &other : badges) {
            const QImage first = withoutOutlines(rig.drawn(one, 16));
            const QImage second = withoutOutlines(rig.drawn(other, 16));
            int different = 0;
            for (int y = 0; y < 16; ++y)
                for (int x = 0; x < 16; ++x)
                    if (std::abs(qRed(first.pixel(x, y)) - qRed(second.pixel(x, y))) > 128)
                        ++different;
            // Of the 49 pixels that most badges take.
            QVERIFY(one == other ? different == 0 : different >= 10);
        }
    }
}

void TestSquareStatusImage::straightEdgesAreSharp_data()
{
    QTest::addColumn<int>("size");
    QTest::addColumn<int>("bar"); // the width of a bar of the pause badge, and the space between
    QTest::addColumn<int>("space");
    QTest::newRow("16") << 16 << 2 << 3;
    QTest::newRow("22") << 22 << 3 << 3;
    QTest::newRow("32") << 32 << 4 << 6;
    QTest::newRow("48") << 48 << 6 << 9;
}

void TestSquareStatusImage::straightEdgesAreSharp()
{
    QFETCH(int, size);
    QFETCH(int, bar);
    QFETCH(int, space);
    Rig rig(Qt::white);
    const QImage drawn = withoutOutlines(rig.drawn(QStringLiteral("pause.fill"), size));
    const int end = size - SquareStatusImage::outlineWidth(size);
    const int height = 2 * bar + space;
    for (int y = end - height; y < end; ++y) {
        for (int x = end - height; x < end; ++x) {
            const int along = x - (end - height);
            const bool isBar = along < bar || along >= bar + space;
            QCOMPARE(qRed(drawn.pixel(x, y)), isBar ? 255 : 0);
        }
    }
}

void TestSquareStatusImage::standsOutOnAnyPanel_data()
{
    QTest::addColumn<QColor>("color");
    QTest::addColumn<QColor>("panel");
    for (const char *panel :
         {"#000000", "#1f2023", "#3c3f41", "#757575", "#888888", "#f6f5f4", "#ffffff"}) {
        QTest::addRow("dark on %s", panel) << StatusIcon::onLightPanel() << QColor(panel);
        QTest::addRow("light on %s", panel) << StatusIcon::onDarkPanel() << QColor(panel);
    }
}

void TestSquareStatusImage::standsOutOnAnyPanel()
{
    QFETCH(QColor, color);
    QFETCH(QColor, panel);
    Rig rig(color);
    Rig shapes(Qt::white);
    const auto legibility = [&](const StatusIcon::Badge &badge, int size, const QRect &within) {
        const QRect place = covered(withoutOutlines(shapes.drawn(badge, size)), within);
        return legible(rig.drawn(badge, size), place, panel);
    };
    for (const int size : {16, 22, 32, 48}) {
        // The upper wave, which the faint lower one follows.
        const QRect wave(0, 0, size, size * 4 / 10);
        const QRect corner(QPoint(size / 2, size / 2), QPoint(size - 1, size - 1));
        QVERIFY(legibility(std::nullopt, size, wave) >= 2.0 / 3);
        for (const QString &badge : badges) {
            QVERIFY(legibility(badge, size, wave) >= 2.0 / 3);
            // Some have gaps.
            QVERIFY(legibility(badge, size, corner) >= 0.5);
        }
    }
}

void TestSquareStatusImage::lowerWaveStandsOut_data()
{
    QTest::addColumn<QColor>("color");
    QTest::addColumn<QColor>("panel");
    for (const char *panel : {"#000000", "#1f2023"})
        QTest::addRow("light on %s", panel) << StatusIcon::onDarkPanel() << QColor(panel);
    QTest::addRow("dark on white") << StatusIcon::onLightPanel() << QColor(Qt::white);
}

/// By itself, without its outline, in the colour that suits the panel. It stays fainter than the
/// upper wave.
void TestSquareStatusImage::lowerWaveStandsOut()
{
    QFETCH(QColor, color);
    QFETCH(QColor, panel);
    Rig rig(color);
    for (const int size : {22, 24, 32, 48}) {
        QImage onPanel(size, size, QImage::Format_RGB32);
        onPanel.fill(panel);
        QPainter(&onPanel).drawImage(0, 0, rig.drawn(std::nullopt, size));
        const bool isDark = luminance(color) < luminance(panel);
        const auto strongest = [&](int x, double from, double to) {
            double most = 1;
            for (int y = qRound(from * size); y < qRound(to * size); ++y) {
                const QColor pixel = onPanel.pixelColor(x, y);
                if ((luminance(pixel) < luminance(panel)) == isDark)
                    most = std::max(most, contrast(pixel, panel));
            }
            return most;
        };
        int readable = 0;
        int fainter = 0;
        int columns = 0;
        for (int x = size * 2 / 10; x < size * 8 / 10; ++x) {
            ++columns;
            // Between the upper wave and the dot.
            const double lower = strongest(x, 0.5, 0.68);
            readable += lower >= 4.5;
            fainter += lower < 0.8 * strongest(x, 0, 0.4);
        }
        QVERIFY2(readable >= columns * 2 / 3, qPrintable(QString::number(size)));
        QVERIFY(fainter >= columns * 2 / 3);
    }
}

void TestSquareStatusImage::slotsThatAreNearlySquare()
{
    Rig rig(Qt::black);
    const QIcon icon = rig.icon().image(badges.first());
    const QImage square = picture(icon, 22);
    const QImage high = icon.pixmap(QSize(22, 30), 1.0).toImage();
    QCOMPARE(high.copy(0, 4, 22, 22), square);
    const QImage wide = icon.pixmap(QSize(30, 22), 1.0).toImage();
    QCOMPARE(wide.copy(4, 0, 22, 22), square);
    // Beyond, there is room for the badge beside the mark.
    QCOMPARE(icon.pixmap(QSize(44, 22), 1.0).toImage(),
             rig.icon().composed(badges.first()).wide.rendered(QSize(44, 22), Qt::black));
}

void TestSquareStatusImage::tinySlots()
{
    Rig rig(Qt::black);
    for (const int size : {1, 2, 3, 5})
        for (const QString &badge : badges)
            QCOMPARE(rig.drawn(badge, size).size(), QSize(size, size));
}

TIDEWICK_GUI_TEST_MAIN(TestSquareStatusImage)
#include "tst_squarestatusimage.moc"
