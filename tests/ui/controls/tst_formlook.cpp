// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "support/Surroundings.h"
#include "ui/Colors.h"
#include "ui/FormRig.h"
#include "ui/about/AboutWindow.h"
#include "ui/controls/Card.h"
#include "ui/controls/ControlPalette.h"
#include "ui/controls/TextLabel.h"
#include "ui/controls/VerbatimText.h"

#include <QApplication>
#include <QPainter>
#include <QScreen>
#include <QStyleFactory>

using namespace tidewick;

/// The look of the card windows: colours, fonts, styles, sizes.
class TestFormLook : public QObject
{
    Q_OBJECT

private slots:
    void textsStandOut_data();
    void textsStandOut();
    void followsLightAndDark_data();
    void followsLightAndDark();
    void disabledPickersFade();
    void looksTheSameInEveryStyle();
    void keyboardFocusShowsARing();
    void clipsNothing_data();
    void clipsNothing();
    void rightToLeft();
    void scrollsOnASmallScreen();

private:
    using Rig = SettingsRig;
};

namespace {

QImage picture(QWidget *widget)
{
    QWidget *window = widget->window();
    return window->grab({widget->mapTo(window, QPoint()), widget->size()}).toImage();
}

/// Whether the widget is large enough for its text.
bool holdsItsText(const QWidget *widget)
{
    const QSize room = widget->size();
    const QSize wanted = widget->sizeHint();
    if (qobject_cast<const TextLabel *>(widget) || qobject_cast<const VerbatimText *>(widget))
        return room.height() >= widget->heightForWidth(room.width());
    return room.width() >= wanted.width() && room.height() >= wanted.height();
}

/// The widgets that are too small for their text or not entirely inside the window.
QStringList clipped(const QWidget &window)
{
    QStringList clipped;
    for (const QWidget *widget : window.findChildren<QWidget *>()) {
        const bool hasText = qobject_cast<const TextLabel *>(widget)
                             || qobject_cast<const VerbatimText *>(widget)
                             || qobject_cast<const Picker *>(widget)
                             || qobject_cast<const QAbstractButton *>(widget);
        if (!hasText || !widget->isVisibleTo(&window))
            continue;
        const QRect place(widget->mapTo(&window, QPoint()), widget->size());
        if (!holdsItsText(widget) || !window.rect().contains(place))
            clipped.append(QString::fromLatin1(widget->metaObject()->className()) + u' '
                           + widget->accessibleName());
    }
    return clipped;
}

void openDetails(AboutWindow &window)
{
    button(window, "Build details")->setChecked(true);
}

} // namespace

/// Text and arrows.
void TestFormLook::disabledPickersFade()
{
    Rig rig;
    Picker *picker = rig.picker(Rig::RoundGrowth);
    const auto strongest = [&] {
        const QImage look = picture(picker);
        const QRect sign = look.rect().adjusted(look.width() * 4 / 5, 3, -3, -3);
        double most = 1;
        for (int y = sign.top(); y <= sign.bottom(); ++y) {
            for (int x = sign.left(); x <= sign.right(); ++x)
                most = std::max(most, contrast(look.pixelColor(x, y), look.pixelColor(6, 6)));
        }
        return most;
    };
    picker->setEnabled(true);
    const double enabled = strongest();
    picker->setEnabled(false);
    QVERIFY2(strongest() < 0.7 * enabled, qPrintable(QString::number(strongest() / enabled)));
}

void TestFormLook::textsStandOut_data()
{
    QTest::addColumn<bool>("dark");
    QTest::addColumn<bool>("highContrast");
    QTest::addColumn<double>("least");
    QTest::newRow("light") << false << false << 4.5;
    QTest::newRow("dark") << true << false << 4.5;
    QTest::newRow("light, high contrast") << false << true << 7.0;
    QTest::newRow("dark, high contrast") << true << true << 7.0;
}

void TestFormLook::textsStandOut()
{
    QFETCH(bool, dark);
    QFETCH(bool, highContrast);
    QFETCH(double, least);
    const QPalette colors = controlPalette({dark, highContrast});
    const auto onGround = [&](QPalette::ColorRole text, QPalette::ColorRole ground) {
        return contrast(colors.color(text), over(colors.color(ground), colors.color(ground)));
    };
    for (const auto text : {QPalette::WindowText, QPalette::Text, QPalette::PlaceholderText}) {
        QVERIFY(onGround(text, QPalette::Window) >= least);
        QVERIFY(onGround(text, QPalette::Base) >= least);
    }
    QVERIFY(onGround(QPalette::BrightText, QPalette::Window) >= least);
    QVERIFY(onGround(QPalette::ButtonText, QPalette::Button) >= least);
    QVERIFY(onGround(QPalette::ButtonText, QPalette::Base) >= least);
    QVERIFY(onGround(QPalette::HighlightedText, QPalette::Highlight) >= least);
    // Hovered and pressed.
    const QColor fill = colors.color(QPalette::AlternateBase);
    const QColor pressed = over(fill, over(fill, colors.color(QPalette::Button)));
    QVERIFY(contrast(colors.color(QPalette::ButtonText), pressed) >= least);
    const QColor hovered = over(fill, colors.color(QPalette::Button));
    QVERIFY(contrast(colors.color(QPalette::BrightText), hovered) >= least);
    QVERIFY(onGround(QPalette::WindowText, QPalette::ToolTipBase) >= least);
    // Non-text elements need less contrast.
    QVERIFY(onGround(QPalette::Link, QPalette::Base) >= 3);
    QVERIFY(onGround(QPalette::PlaceholderText, QPalette::Button) >= 3);
    if (!highContrast)
        return;
    const QColor card = colors.color(QPalette::Base);
    QVERIFY(contrast(over(colors.color(QPalette::Mid), card), card) >= 3);
    QVERIFY(contrast(over(colors.color(QPalette::Dark), card), card) >= 3);
}

void TestFormLook::followsLightAndDark_data()
{
    QTest::addColumn<bool>("dark");
    QTest::addColumn<QColor>("ground");
    QTest::addColumn<QColor>("card");
    QTest::newRow("light") << false << QColor(240, 240, 242) << QColor(255, 255, 255);
    QTest::newRow("dark") << true << QColor(30, 31, 36) << QColor(41, 43, 49);
}

void TestFormLook::followsLightAndDark()
{
    QFETCH(bool, dark);
    QFETCH(QColor, ground);
    QFETCH(QColor, card);
    Rig rig;
    AboutWindow about(rig.node.node());
    about.show();
    openDetails(about);
    for (CardWindow *window : std::initializer_list<CardWindow *>{rig.window.get(), &about}) {
        window->setScheme({!dark});
        window->setScheme({dark});
        const QImage whole = window->grab().toImage();
        QCOMPARE(whole.pixelColor(1, 1), ground);
        QCOMPARE(whole.pixelColor(whole.width() - 2, whole.height() - 2), ground);
        const QPalette colors = controlPalette({dark});
        for (Card *widget : window->findChildren<Card *>()) {
            const QImage drawn = picture(widget);
            QCOMPARE(drawn.pixelColor(0, 0), ground); // its corners are round
            QCOMPARE(drawn.pixelColor(8, 8), card);
            QVERIFY(distance(drawn.pixelColor(0, 20), over(colors.color(QPalette::Mid), card)) < 3);
        }
        for (TextLabel *text : window->findChildren<TextLabel *>()) {
            if (text->isVisible() && text->text().size() > 5)
                QVERIFY(distance(inkColor(picture(text)), colors.color(text->foregroundRole()))
                        < 24);
        }
    }
    QCOMPARE(picture(about.findChild<VerbatimText *>()).pixelColor(8, 8), card);
}

void TestFormLook::looksTheSameInEveryStyle()
{
    QList<QImage> settings;
    QList<QImage> abouts;
    const QString before = QApplication::style()->objectName();
    for (const QString &style : QStyleFactory::keys()) {
        QApplication::setStyle(style);
        Rig rig;
        settings.append(rig.window->grab().toImage());
        AboutWindow about(rig.node.node());
        about.show();
        openDetails(about);
        abouts.append(about.grab().toImage());
    }
    QApplication::setStyle(before);
    QVERIFY(settings.size() > 1);
    QCOMPARE(settings.count(settings.constFirst()), settings.size());
    QCOMPARE(abouts.count(abouts.constFirst()), abouts.size());
}

void TestFormLook::keyboardFocusShowsARing()
{
    Rig rig;
    const QColor ring = controlPalette({false}).color(QPalette::Link);
    const auto isRinged = [&](QWidget *widget) {
        const QImage drawn = picture(widget);
        return distance(drawn.pixelColor(drawn.width() / 2, 0), ring) < 60;
    };
    QWidget *first = rig.picker(Rig::AfterFull);
    first->setFocus(Qt::MouseFocusReason);
    QVERIFY(!isRinged(first));
    rig.key(Qt::Key_Tab);
    QVERIFY(!isRinged(first));
    QVERIFY(isRinged(rig.picker(Rig::HardCap)));
    button(*rig.window, "View")->setFocus(Qt::TabFocusReason);
    QVERIFY(isRinged(button(*rig.window, "View")));
}

void TestFormLook::clipsNothing_data()
{
    QTest::addColumn<int>("points");
    for (int points = 9; points <= 16; ++points)
        QTest::addRow("%d", points) << points;
}

void TestFormLook::clipsNothing()
{
    QFETCH(int, points);
    // Set the font before creating the windows, and after.
    for (const bool later : {false, true}) {
        const QFont before = QApplication::font();
        QFont font = before;
        font.setPointSize(points);
        if (!later)
            QApplication::setFont(font);
        Rig rig("roundGrowthMiB=2048\n");
        AboutWindow about(rig.node.node());
        about.show();
        openDetails(about);
        rig.window->setFont(font);
        about.setFont(font);
        QCoreApplication::processEvents();
        // A window that is too tall for the screen scrolls.
        if (rig.window->height() < rig.window->screen()->availableSize().height() - 40)
            QCOMPARE(clipped(*rig.window), QStringList());
        if (about.height() < about.screen()->availableSize().height() - 40)
            QCOMPARE(clipped(about), QStringList());
        QVERIFY(rig.window->width() >= 520);
        QVERIFY(about.width() >= 480);
        QApplication::setFont(before);
    }
}

void TestFormLook::rightToLeft()
{
    Rig rig;
    const QSize size = rig.window->size();
    const QRect place(rig.picker(Rig::AfterFull)->mapTo(rig.window.get(), QPoint()),
                      rig.picker(Rig::AfterFull)->size());
    rig.window->setLayoutDirection(Qt::RightToLeft);
    QCoreApplication::processEvents();
    QCOMPARE(rig.window->size(), size);
    const Picker *picker = rig.picker(Rig::AfterFull);
    QCOMPARE(picker->mapTo(rig.window.get(), QPoint()).x(), size.width() - 1 - place.right());
    QCOMPARE(clipped(*rig.window), QStringList());
}

void TestFormLook::scrollsOnASmallScreen()
{
    Rig rig;
    QFont font = rig.window->font();
    font.setPointSize(30);
    rig.window->setFont(font);
    QVERIFY(rig.window->frameGeometry().height() <= rig.window->screen()->availableSize().height());
    const auto isInView = [&rig](const QWidget *widget) {
        return rig.window->rect().contains(
            QRect(widget->mapTo(rig.window.get(), QPoint()), widget->size()));
    };
    QVERIFY(!isInView(button(*rig.window, "View")));
    for (int i = 0; i < 6; ++i)
        rig.key(Qt::Key_Tab);
    QCOMPARE(rig.window->focusWidget(), button(*rig.window, "View"));
    QVERIFY(isInView(button(*rig.window, "View")));
}

TIDEWICK_GUI_TEST_MAIN(TestFormLook)
#include "tst_formlook.moc"
