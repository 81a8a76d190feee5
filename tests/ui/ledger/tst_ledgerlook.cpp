// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "support/Surroundings.h"
#include "ui/Colors.h"
#include "ui/DrawnTexts.h"
#include "ui/ledger/LedgerDrawing.h"
#include "ui/ledger/LedgerRig.h"

#include <QApplication>
#include <QScrollBar>

using namespace tidewick;

/// The look of the window, pixel by pixel.
class TestLedgerLook : public QObject
{
    Q_OBJECT

private slots:
    void colors_data() { looks(); }
    void colors();
    void followsTheScheme();
    void textsStandOut_data();
    void textsStandOut();
    void shares();
    void focusRingIsVisible_data() { looks(); }
    void focusRingIsVisible();
    void cornersStayRound_data();
    void cornersStayRound();
    void partialRepaintsMatchAFullOne_data();
    void partialRepaintsMatchAFullOne();

private:
    static void looks();
};

namespace {

void fill(LedgerRig &rig)
{
    rig.closeMany(60);
    for (const char *type : {"Payment", "OfferCreate", "PaymentChannelCreate", "NFTokenMint",
                             "AMMDeposit", "EscrowFinish", "Batch", "TrustSet"})
        for (const char *result : {"tesSUCCESS", "tecUNFUNDED_OFFER"})
            rig.stream.transact(QString::fromLatin1(type) + QLatin1String(result),
                                QString::fromLatin1(type), LedgerRig::firstLedger + 59,
                                QString::fromLatin1(result));
    rig.flush();
    rig.close(500);
}

/// The widget rendered at that device pixel ratio.
QImage picture(QWidget &widget, double ratio = 1)
{
    QImage image(widget.size() * ratio, QImage::Format_RGB32);
    image.setDevicePixelRatio(ratio);
    widget.render(&image);
    return image;
}

} // namespace

void TestLedgerLook::looks()
{
    QTest::addColumn<bool>("dark");
    QTest::addColumn<double>("ratio");
    for (const bool dark : {false, true})
        for (const double ratio : {1.0, 2.0})
            QTest::addRow("%s, ratio %.0f", dark ? "dark" : "light", ratio) << dark << ratio;
}

void TestLedgerLook::colors()
{
    QFETCH(bool, dark);
    QFETCH(double, ratio);
    LedgerRig rig;
    rig.window.setScheme({dark});
    fill(rig);
    const Palette colors({dark});
    const QImage image = picture(rig.window, ratio);
    const auto at = [&](const QWidget &part, const QPoint &point) {
        return image.pixelColor(part.mapTo(&rig.window, point) * ratio);
    };
    QCOMPARE(at(rig.window, {0, 0}), colors.bg);
    QCOMPARE(at(rig.window, {799, 779}), colors.bg);
    QCOMPARE(at(rig.window, {400, 2}), colors.bg);
    for (LedgerCard *card : rig.window.findChildren<LedgerCard *>()) {
        QCOMPARE(at(*card, {0, 0}), colors.bg);
        if (card->accessibleName().startsWith(QStringLiteral("Ledger ")))
            continue;
        QCOMPARE(at(*card, {card->width() / 2, 4}), colors.surface);
        QCOMPARE(at(*card, {4, card->height() / 2}), colors.surface);
        // The hairline is blended with the card or with the background.
        const QColor edge = at(*card, {0, card->height() / 2});
        QVERIFY(std::min(distance(edge, over(colors.line, colors.surface)),
                         distance(edge, over(colors.line, colors.bg)))
                <= 20);
        QVERIFY(edge != colors.surface && edge != colors.bg);
    }
    QCOMPARE(at(*rig.list().viewport(), {3, 3}), colors.surface);
}

void TestLedgerLook::followsTheScheme()
{
    LedgerRig rig;
    fill(rig);
    rig.pointAt(rig.bar(3));
    rig.key(Qt::Key_Tab);
    const QImage light = rig.screen();
    rig.window.setScheme({true});
    const QImage dark = rig.screen();
    QVERIFY(dark != light);
    rig.window.setScheme({false});
    QCOMPARE(rig.screen(), light);

    LedgerRig other;
    other.window.setScheme({true});
    fill(other);
    other.pointAt({2, 2});
    other.pointAt(other.bar(3));
    other.key(Qt::Key_Tab);
    QCOMPARE(other.screen(), dark);
}

void TestLedgerLook::textsStandOut_data()
{
    QTest::addColumn<bool>("dark");
    QTest::addColumn<bool>("highContrast");
    QTest::addColumn<double>("ratio");
    QTest::addColumn<double>("least");
    for (const bool dark : {false, true}) {
        const char *name = dark ? "dark" : "light";
        for (const double ratio : {1.0, 2.0})
            QTest::addRow("%s, ratio %.0f", name, ratio) << dark << false << ratio << 4.5;
        QTest::addRow("%s, high contrast", name) << dark << true << 2.0 << 7.0;
    }
}

void TestLedgerLook::textsStandOut()
{
    QFETCH(bool, dark);
    QFETCH(bool, highContrast);
    QFETCH(double, ratio);
    QFETCH(double, least);
    for (const bool live : {false, true}) {
        LedgerRig rig;
        rig.window.setScheme({dark, highContrast});
        if (live)
            fill(rig);
        rig.pointAt(rig.row(1));
        const QImage image = picture(rig.window, 4 * ratio);
        int texts = 0;
        for (QWidget *part : rig.window.findChildren<QWidget *>()) {
            for (const DrawnText &text : drawnTexts(*part)) {
                const QRect place =
                    text.rect.translated(part->mapTo(&rig.window, QPoint())).toAlignedRect();
                if (!part->isVisible() || !part->rect().contains(text.rect.toRect()))
                    continue;
                const QImage drawn = image.copy(
                    QRectF(QPointF(place.topLeft()) * 4 * ratio, QSizeF(place.size()) * 4 * ratio)
                        .toRect());
                const double seen = contrast(inkColor(drawn), drawn.pixelColor(0, 0));
                QVERIFY2(seen >= least,
                         qPrintable(QStringLiteral("%1: %2").arg(text.text).arg(seen)));
                ++texts;
            }
        }
        QVERIFY(texts > (live ? 30 : 15));
    }
}

void TestLedgerLook::shares()
{
    LedgerRig rig;
    rig.close(1);
    for (int i = 0; i < 9; ++i)
        rig.stream.transact(QString::number(i),
                            i < 6 ? QStringLiteral("Payment") : QStringLiteral("OfferCreate"),
                            LedgerRig::firstLedger);
    rig.close(1);
    QWidget &card = rig.named("By type");
    const QImage image = picture(card);
    const auto length = [&](const char *type) {
        for (const DrawnText &text : drawnTexts(card)) {
            if (text.text != QLatin1String(type))
                continue;
            const int y = qRound(text.rect.center().y());
            const QColor color = text.text == u"Payment" ? QColor::fromRgbF(0.27F, 0.47F, 0.95F)
                                                         : QColor::fromRgbF(0.16F, 0.66F, 0.62F);
            const QColor fill = LedgerDrawing::mixed(Palette({false}).surface, color, 0.8F);
            int count = 0;
            for (int x = qRound(text.rect.right()); x < image.width(); ++x)
                count += distance(image.pixelColor(x, y), fill) <= 6 ? 1 : 0;
            return count;
        }
        return 0;
    };
    QVERIFY(length("Payment") > card.width() / 3);
    QVERIFY(std::abs(length("Payment") - 2 * length("OfferCreate")) <= 4);
}

void TestLedgerLook::focusRingIsVisible()
{
    QFETCH(bool, dark);
    QFETCH(double, ratio);
    LedgerRig rig;
    rig.window.setScheme({dark});
    fill(rig);
    const QImage before = picture(rig.window, ratio);
    const auto ring = [&] {
        const QImage after = picture(rig.window, ratio);
        int points = 0;
        double most = 0;
        for (int y = 0; y < after.height(); ++y) {
            for (int x = 0; x < after.width(); ++x) {
                if (after.pixel(x, y) == before.pixel(x, y)
                    || distance(before.pixelColor(x, y), Palette({dark}).surface) > 6)
                    continue;
                ++points;
                most = std::max(most, contrast(after.pixelColor(x, y), before.pixelColor(x, y)));
            }
        }
        return points > 100 && most >= 3;
    };
    rig.key(Qt::Key_Tab);
    QVERIFY(ring());
    rig.key(Qt::Key_Tab);
    QVERIFY(ring());
}

void TestLedgerLook::cornersStayRound_data()
{
    QTest::addColumn<int>("points");
    for (const int points : {9, 12, 16, 20})
        QTest::addRow("%d pt", points) << points;
}

/// The list does not paint over the card's corners.
void TestLedgerLook::cornersStayRound()
{
    QFETCH(int, points);
    LedgerRig rig;
    QFont font = rig.window.font();
    font.setPointSize(points);
    rig.window.setFont(font);
    fill(rig);
    QWidget &card = *rig.list().parentWidget();
    QImage alone(card.size(), QImage::Format_RGB32);
    card.render(&alone, {}, {}, QWidget::DrawWindowBackground);
    const QImage whole = picture(card);
    const int side = points;
    for (const QRect corner : {QRect(0, card.height() - side, side, side),
                               QRect(card.width() - side, card.height() - side, side, side)})
        QCOMPARE(whole.copy(corner), alone.copy(corner));
}

void TestLedgerLook::partialRepaintsMatchAFullOne_data()
{
    QTest::addColumn<bool>("dark");
    QTest::addColumn<bool>("still");
    QTest::newRow("light") << false << true;
    QTest::newRow("dark") << true << true;
    QTest::newRow("moving") << false << false;
}

/// A series of partial repaints leaves the same picture as repainting everything.
void TestLedgerLook::partialRepaintsMatchAFullOne()
{
    QFETCH(bool, dark);
    QFETCH(bool, still);
    LedgerRig rig;
    rig.window.setScheme({dark});
    rig.window.setStill(still);
    fill(rig);
    rig.transact(30);
    int step = 0;
    const auto isWhole = [&] {
        const EventCount frames(nullptr, QEvent::Paint);
        int before = -1;
        while (before != frames.count()) {
            before = frames.count();
            QTest::qWait(still ? 0 : 40);
        }
        const QImage pieces = rig.screen();
        for (QWidget *part : rig.window.findChildren<QWidget *>())
            part->update();
        rig.window.update();
        const QImage whole = rig.screen();
        ++step;
        return pieces == whole;
    };
    QVERIFY(isWhole());
    const QList<std::function<void()>> changes{
        [&] { rig.pointAt(rig.bar(59)); },
        [&] { rig.close(900); },
        [&] { rig.pointAt(rig.bar(0)); },
        [&] { rig.key(Qt::Key_Tab); },
        [&] { rig.close(1); },
        [&] { rig.key(Qt::Key_Home); },
        [&] {
            rig.pointAt({2, 2});
        },
        [&] { rig.key(Qt::Key_End); },
        [&] { rig.close(1200); },
        [&] { rig.transact(2); },
        [&] { rig.key(Qt::Key_Tab); },
        [&] { rig.key(Qt::Key_Down); },
        [&] { rig.pointAt(rig.row(2)); },
        [&] { rig.transact(3); },
        [&] { rig.key(Qt::Key_End); },
        [&] {
            rig.pointAt({2, 2});
        },
        [&] { rig.key(Qt::Key_Backtab); },
        [&] { rig.stream.fail(); },
        [&] { rig.window.resize(801, 791); },
        [&] { rig.window.resize(700, 600); },
        [&] { rig.transact(60); },
    };
    for (const auto &change : changes) {
        change();
        QVERIFY2(isWhole(), qPrintable(QString::number(step)));
    }
}

TIDEWICK_GUI_TEST_MAIN(TestLedgerLook)
#include "tst_ledgerlook.moc"
