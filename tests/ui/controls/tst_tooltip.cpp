// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "support/Surroundings.h"
#include "ui/Colors.h"
#include "ui/controls/ControlPalette.h"
#include "ui/controls/ToolTip.h"

#include <QApplication>
#include <QHelpEvent>
#include <QLabel>
#include <QMenu>
#include <QScreen>
#include <QTextEdit>
#include <QToolTip>

using namespace tidewick;

/// Tooltips as Qt shows them when the pointer rests, and the menus of texts.
class TestToolTip : public QObject
{
    Q_OBJECT

private slots:
    void init() { ToolTip::setScheme({false}); }

    void isRoundedAndRaised_data();
    void isRoundedAndRaised();
    void followsTheAppearanceWhileOpen();
    void shortTextsStayOnOneLine_data();
    void shortTextsStayOnOneLine();
    void longTextsAreWrapped_data();
    void longTextsAreWrapped();
    void linesStay();
    void hugeTextsFitTheScreen();
    void markupIsText();
    void headlinesAreBold();
    void menusOfTextsHaveTheLook();
};

namespace {

/// A widget with a tooltip, under the pointer.
class Rig
{
public:
    explicit Rig(const QString &markup)
    {
        m_widget.setToolTip(markup);
        m_widget.resize(200, 100);
        m_widget.move(50, 50);
        m_widget.show();
        const QPoint place(20, 20);
        QHelpEvent rest(QEvent::ToolTip, place, m_widget.mapToGlobal(place));
        QCoreApplication::sendEvent(&m_widget, &rest);
        if (!tip())
            qFatal("No tooltip appears");
    }
    ~Rig() { delete tip(); }
    Rig(const Rig &) = delete;
    Rig &operator=(const Rig &) = delete;

    static QLabel *tip()
    {
        for (QWidget *widget : QApplication::topLevelWidgets()) {
            if (widget->inherits("QTipLabel") && widget->isVisible())
                return qobject_cast<QLabel *>(widget);
        }
        return nullptr;
    }

    static QImage picture()
    {
        QImage image(tip()->size(), QImage::Format_ARGB32_Premultiplied);
        image.fill(Qt::transparent);
        tip()->render(&image, {}, {}, QWidget::DrawChildren);
        return image;
    }

private:
    QWidget m_widget;
};

/// How many lines of ink a picture has.
int linesOf(const QImage &picture)
{
    const QColor ground = picture.pixelColor(picture.width() / 2, 3);
    int lines = 0;
    bool wasInked = false;
    for (int y = 2; y < picture.height() - 2; ++y) {
        bool isInked = false;
        for (int x = 4; x < picture.width() - 4; ++x)
            isInked |= distance(picture.pixelColor(x, y), ground) > 120;
        lines += isInked && !wasInked;
        wasInked = isInked;
    }
    return lines;
}

} // namespace

void TestToolTip::isRoundedAndRaised_data()
{
    QTest::addColumn<bool>("dark");
    QTest::newRow("light") << false;
    QTest::newRow("dark") << true;
}

/// Lighter than a card in dark, where shadows do not show.
void TestToolTip::isRoundedAndRaised()
{
    QFETCH(bool, dark);
    ToolTip::setScheme({dark});
    const Rig rig(ToolTip::plain(QStringLiteral("/home/anna/.local/share/Tidewick")));
    const QImage tip = Rig::picture();
    for (const int x : {0, tip.width() - 1}) {
        for (const int y : {0, tip.height() - 1})
            QCOMPARE(tip.pixelColor(x, y).alpha(), 0);
    }
    const QColor ground = tip.pixelColor(tip.width() / 2, 3);
    const QPalette colors = controlPalette({dark});
    QVERIFY(ground.lightness() >= colors.color(QPalette::Base).lightness() + (dark ? 5 : 0));
    QCOMPARE(ground.lightness() < 128, dark);
    const QColor border = over(colors.color(QPalette::Dark), ground);
    QVERIFY(distance(tip.pixelColor(tip.width() / 2, 0), border) < 6);
    const QImage text = tip.copy(tip.rect().adjusted(5, 3, -5, -3));
    QVERIFY(contrast(inkColor(text), ground) >= 4.5);
}

void TestToolTip::followsTheAppearanceWhileOpen()
{
    const Rig rig(ToolTip::plain(QStringLiteral("text")));
    const auto ground = [] { return Rig::picture().pixelColor(Rig::tip()->width() / 2, 3); };
    QVERIFY(ground().lightness() > 200);
    ToolTip::setScheme({true});
    QVERIFY(ground().lightness() < 80);
}

void TestToolTip::shortTextsStayOnOneLine_data()
{
    QTest::addColumn<QString>("text");
    QTest::newRow("a word") << QStringLiteral("word");
    QTest::newRow("a short path") << QStringLiteral("/tmp/x/.local/share/Tid");
    QTest::newRow("a path") << QStringLiteral("/home/anna/.local/share/Tidewick");
    QTest::newRow("a path with a space") << QStringLiteral("/home/anna/My Files/Tidewick");
    QTest::newRow("a long path") << QStringLiteral(
        "/media/anna/0123-4567/backups/home/anna/.local/share/Tidewick");
    QTest::newRow("a sentence") << QStringLiteral("No valid list of validators so far");
}

void TestToolTip::shortTextsStayOnOneLine()
{
    QFETCH(QString, text);
    const Rig rig(ToolTip::plain(text));
    QCOMPARE(linesOf(Rig::picture()), 1);
    const int width = QFontMetrics(QToolTip::font()).horizontalAdvance(text);
    QVERIFY(Rig::tip()->width() >= width + 16);
    QVERIFY(Rig::tip()->width() <= width + 32);
}

void TestToolTip::longTextsAreWrapped_data()
{
    QTest::addColumn<QString>("text");
    QTest::newRow("sentences") << QStringLiteral("No valid list of validators yet. ").repeated(6);
    QTest::newRow("an endless path") << QStringLiteral("/directory").repeated(30);
    QTest::newRow("an endless word") << QString(400, u'x');
}

void TestToolTip::longTextsAreWrapped()
{
    QFETCH(QString, text);
    const Rig rig(ToolTip::plain(text));
    const int lines = linesOf(Rig::picture());
    QVERIFY(lines > 1);
    const bool isPath = !text.contains(u' ');
    QVERIFY(Rig::tip()->width() <= (isPath ? 700 : 360));
    // No line is needlessly short.
    const int width = QFontMetrics(QToolTip::font()).horizontalAdvance(text);
    QVERIFY2(lines <= width / (isPath ? 560 : 250) + 1, qPrintable(QString::number(lines)));
}

void TestToolTip::linesStay()
{
    const Rig rig(ToolTip::plain(QStringLiteral("one\n  two\n\nfour")));
    QCOMPARE(linesOf(Rig::picture()), 3);
    const int line = QFontMetrics(QToolTip::font()).lineSpacing();
    QVERIFY(Rig::tip()->height() >= 4 * line);
}

void TestToolTip::hugeTextsFitTheScreen()
{
    for (const QString &text : {QString(1 << 20, u'x'), QStringLiteral("a\n").repeated(100'000),
                                QStringLiteral("word ").repeated(100'000)}) {
        const Rig rig(ToolTip::plain(text));
        QVERIFY(Rig::tip()->height() <= Rig::tip()->screen()->availableSize().height());
        QVERIFY(Rig::tip()->width() <= Rig::tip()->screen()->availableSize().width());
    }
}

void TestToolTip::markupIsText()
{
    const QString text = QStringLiteral("<b>a</b> & <img src=x> &lt;  two  spaces");
    const Rig rig(ToolTip::plain(text));
    QCOMPARE(linesOf(Rig::picture()), 1);
    const int width = QFontMetrics(QToolTip::font()).horizontalAdvance(text);
    QVERIFY(std::abs(Rig::tip()->width() - width) <= 32);
}

void TestToolTip::headlinesAreBold()
{
    const QString headline = QStringLiteral("Tidewick: Connecting… <i>");
    QFont bold = QToolTip::font();
    bold.setBold(true);
    const int width = QFontMetrics(bold).horizontalAdvance(headline);
    QVERIFY(width > QFontMetrics(QToolTip::font()).horizontalAdvance(headline));
    {
        const Rig rig(ToolTip::titled(headline, {}));
        QCOMPARE(linesOf(Rig::picture()), 1);
        QVERIFY(Rig::tip()->width() >= width + 16);
    }
    const Rig rig(ToolTip::titled(headline, QStringLiteral("1 peer\nNo list")));
    QCOMPARE(linesOf(Rig::picture()), 3);
    QVERIFY(Rig::tip()->width() >= width + 16);
}

/// In the colours of the window in which they open.
void TestToolTip::menusOfTextsHaveTheLook()
{
    for (const bool dark : {false, true}) {
        QTextEdit edit;
        edit.setReadOnly(true);
        edit.setPlainText(QStringLiteral("text"));
        edit.setPalette(controlPalette({dark}));
        edit.show();
        const std::unique_ptr<QMenu> menu(edit.createStandardContextMenu());
        menu->popup({300, 300});
        QVERIFY(QTest::qWaitForWindowExposed(menu.get()));
        QImage drawn(menu->size(), QImage::Format_ARGB32_Premultiplied);
        drawn.fill(Qt::transparent);
        menu->render(&drawn, {}, {}, QWidget::DrawChildren);
        QCOMPARE(drawn.pixelColor(0, 0).alpha(), 0);
        const QColor ground = drawn.pixelColor(drawn.width() / 2, 3);
        QCOMPARE(ground.lightness() < 128, dark);
        // "Select All", with its shortcut at the other end.
        const QRect place = menu->actionGeometry(menu->actions().constLast());
        for (const QRect &half : {place.adjusted(2, 2, -place.width() / 2, -2),
                                  place.adjusted(place.width() / 2, 2, -2, -2)}) {
            const QImage text = drawn.copy(half);
            QVERIFY(contrast(inkColor(text), ground) >= 3);
        }
    }
}

TIDEWICK_GUI_TEST_MAIN(TestToolTip)
#include "tst_tooltip.moc"
