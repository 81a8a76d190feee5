// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "support/Surroundings.h"
#include "ui/DrawnTexts.h"
#include "ui/TestFonts.h"
#include "ui/controls/TabularFigures.h"
#include "ui/controls/WrappedText.h"
#include "ui/ledger/LedgerHeader.h"
#include "ui/ledger/LedgerRig.h"
#include "ui/ledger/LedgerTypes.h"
#include "ui/panel/PanelRig.h"

#include <QApplication>
#include <QPainter>

using namespace tidewick;

/// Figures that change leave everything beside them in place, in fonts whose digits differ in
/// width.
class TestTabularFigures : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void cleanup() { QApplication::setFont(m_usual); }

    void digitsShareOneAdvance_data();
    void digitsShareOneAdvance();
    void digitsAreCentred();
    void othersStayInPlace_data();
    void othersStayInPlace();
    void wrappedLinesStayInPlace();
    void panel();
    void ledger();
    void elidesWhatDoesNotFit();

private:
    static void addFonts();

    QFont m_usual = QApplication::font();
};

namespace {

/// A font with narrow and wide digits.
QFont uneven(qreal points)
{
    return testFont("uneven", points);
}

double widthOf(const QString &text, const QFont &font)
{
    QTextLayout layout(text, font);
    layout.setFormats(TabularFigures::formats(text, font));
    layout.beginLayout();
    QTextLine line = layout.createLine();
    line.setLineWidth(1e6);
    layout.endLayout();
    return TabularFigures::indent(text.front(), font) + line.horizontalAdvance();
}

/// A text on a single wide line, or on lines of that width.
QImage drawn(const QString &text, const QFont &font, int width = 600)
{
    WrappedText wrapped(4, 4);
    wrapped.setFont(font);
    wrapped.setTabular();
    wrapped.set(text);
    QImage image(width, wrapped.height(width), QImage::Format_RGB32);
    image.fill(Qt::white);
    QPainter painter(&image);
    wrapped.draw(painter, width, Qt::LeftToRight);
    return image;
}

/// The columns in which two pictures differ.
std::pair<int, int> differing(const QImage &one, const QImage &other)
{
    std::pair columns(one.width(), -1);
    for (int x = 0; x < one.width(); ++x) {
        for (int y = 0; y < one.height(); ++y) {
            if (one.pixel(x, y) != other.pixel(x, y))
                columns = {std::min(columns.first, x), std::max(columns.second, x)};
        }
    }
    return columns;
}

} // namespace

/// Without such digits, nothing here could fail.
void TestTabularFigures::initTestCase()
{
    const QFontMetricsF metrics(uneven(20));
    const auto width = [&](char16_t digit) { return metrics.horizontalAdvance(QChar(digit)); };
    QVERIFY(width(u'0') - width(u'1') > 1);
}

void TestTabularFigures::addFonts()
{
    QTest::addColumn<QFont>("font");
    for (const TestFont &font : testFonts)
        for (const int points : {9, 10, 17, 24})
            QTest::addRow("%s, %d pt", font.kind, points) << testFont(font.kind, points);
}

void TestTabularFigures::digitsShareOneAdvance_data()
{
    addFonts();
}

void TestTabularFigures::digitsShareOneAdvance()
{
    QFETCH(QFont, font);
    const double zero = widthOf(QStringLiteral("0"), font);
    for (int digit = 0; digit < 10; ++digit) {
        const QChar character(u'0' + digit);
        QCOMPARE(widthOf(character, font), zero);
        QCOMPARE(widthOf(QString(7, character), font), 7 * zero);
    }
    // No kerning, which "17" and "74" invite.
    QCOMPARE(widthOf(QStringLiteral("1774471"), font), 7 * zero);
    QCOMPARE(widthOf(QStringLiteral("7.4"), font), widthOf(QStringLiteral("1.1"), font));
    // Other texts are as wide as ever.
    const QString words = QStringLiteral("Validated ledger");
    QCOMPARE(TabularFigures::formats(words, font).size(), 0);
    QCOMPARE(TabularFigures::indent(u'V', font), 0.0);
}

void TestTabularFigures::digitsAreCentred()
{
    const QFont font = uneven(40);
    for (const QString &text : {QStringLiteral("1"), QStringLiteral("#1"), QStringLiteral("01")}) {
        const auto edges = [&](const QString &other) {
            return differing(drawn(other, font), drawn(QString(text).replace(u'1', u' '), font));
        };
        const auto narrow = edges(text);
        const auto wide = edges(QString(text).replace(u'1', u'0'));
        QVERIFY2(narrow.first > wide.first + 1 && narrow.second < wide.second - 1,
                 qPrintable(text));
    }
}

void TestTabularFigures::othersStayInPlace_data()
{
    QTest::addColumn<QString>("pattern");
    for (const char *pattern : {"Ledger %1 end", "#%1 · %1 transactions", "%1.%1 GB", "(%1s ago)",
                                "a%1b", "%1", "Uptime: %1h %1m", "v%1/%1-%1:x"})
        QTest::newRow(pattern) << QString::fromUtf8(pattern);
}

/// Pixel by pixel.
void TestTabularFigures::othersStayInPlace()
{
    QFETCH(QString, pattern);
    const QString figure = QStringLiteral("%1");
    QString others = pattern;
    others.remove(figure);
    for (const int points : {10, 11, 19}) {
        const QFont font = uneven(points);
        const auto shown = [&](int digit) {
            return drawn(QString(pattern).replace(figure, QString::number(digit)), font);
        };
        // What all digits have in common are the other characters.
        QImage common = shown(0);
        for (int digit = 1; digit < 10; ++digit) {
            const QImage other = shown(digit);
            QCOMPARE(other.size(), common.size());
            for (int y = 0; y < common.height(); ++y) {
                for (int x = 0; x < common.width(); ++x) {
                    const int lighter =
                        std::max(qGray(common.pixel(x, y)), qGray(other.pixel(x, y)));
                    common.setPixel(x, y, qRgb(lighter, lighter, lighter));
                }
            }
        }
        // Each character other than a digit has its ink there, as dark as when it stands alone.
        const auto inkIn = [](const QImage &image) {
            qint64 ink = 0;
            for (int y = 0; y < image.height(); ++y)
                for (int x = 0; x < image.width(); ++x)
                    ink += 255 - qGray(image.pixel(x, y));
            return ink;
        };
        qint64 least = 0;
        for (const QChar character : others)
            least += inkIn(drawn(character, font));
        QVERIFY2(inkIn(common) >= least * 9 / 10,
                 qPrintable(QStringLiteral("%1 of %2").arg(inkIn(common)).arg(least)));
    }
}

/// Also where a line begins with a figure.
void TestTabularFigures::wrappedLinesStayInPlace()
{
    const QFont font = uneven(16);
    const int width = 110;
    const QString text = QStringLiteral("Some words %1 a");
    const auto shown = [&](const char *figure) {
        return drawn(text.arg(QLatin1String(figure)), font, width);
    };
    const QImage first = shown("1111");
    QCOMPARE(shown("8888").size(), first.size());
    const auto columns = differing(first, shown("8888"));
    // Only the figure, which begins a line.
    QVERIFY(columns.first < 12);
    QVERIFY(columns.second < columns.first + 4 * widthOf(QStringLiteral("0"), font));
}

void TestTabularFigures::panel()
{
    QApplication::setFont(uneven(12));
    NodeStatus status;
    const auto texts = [&](const char *digit) {
        const QString one = QLatin1String(digit);
        status.ledger = QStringLiteral("#%1%1%1 (%1s ago)").arg(one);
        status.ledgerSeq = 7;
        status.uptime = QStringLiteral("%1h %1m").arg(one);
        PanelRig rig(status);
        QMap<QString, double> ends;
        for (QWidget *widget : rig.panel.findChildren<QWidget *>())
            for (const DrawnText &drawnText : drawnTexts(*widget))
                ends[drawnText.text.left(6)] = drawnText.rect.right();
        return ends;
    };
    const QMap<QString, double> narrow = texts("1");
    QVERIFY(narrow.contains(QStringLiteral("Valida")) && narrow.contains(QStringLiteral("Uptime")));
    QCOMPARE(texts("8"), narrow);
}

void TestTabularFigures::ledger()
{
    QApplication::setFont(uneven(12));
    const auto texts = [](qint64 id, qint64 txns) {
        LedgerRig rig({1000, 900});
        for (qint64 i = 0; i < 2; ++i) {
            rig.stream.close(id, txns, 4 * i);
            for (int k = 0; k < 11 && i == 0; ++k)
                rig.stream.transact(QStringLiteral("%1").arg(k), QStringLiteral("Payment"), id);
        }
        rig.pointAt({2, 2});
        rig.pointAt(rig.bar(0));
        QList<double> edges;
        for (QWidget *part : QList<QWidget *>{
                 rig.window.findChild<LedgerHeader *>(), rig.window.findChild<LedgerTypes *>(),
                 &rig.histogram(), &rig.named("This ledger"), &rig.named("Busiest")}) {
            // A text begins with its first digit's ink, which may change.
            for (const DrawnText &text : drawnTexts(*part))
                edges << (text.text.front().isDigit() ? 0 : text.rect.left()) << text.rect.right();
        }
        return edges;
    };
    QCOMPARE(texts(11'111'111, 111), texts(88'888'888, 888));
}

/// The space between digits counts.
void TestTabularFigures::elidesWhatDoesNotFit()
{
    const QFont font = uneven(20);
    const QString text = QStringLiteral("1111111");
    const int natural = QFontMetrics(font).horizontalAdvance(text);
    const FigureText figure;
    QVERIFY(figure.width(text, font, 1000) > natural + 4);
    QCOMPARE(figure.width(text, font, 1000), widthOf(text, font));
    for (const int room : {natural + 2, natural, natural / 2})
        QVERIFY(figure.width(text, font, room) <= room);
}

TIDEWICK_GUI_TEST_MAIN(TestTabularFigures)
#include "tst_tabularfigures.moc"
