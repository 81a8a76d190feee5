// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "support/Surroundings.h"
#include "ui/Colors.h"
#include "ui/FormRig.h"
#include "ui/controls/ControlPalette.h"
#include "ui/controls/Popups.h"

#include <QAbstractItemView>
#include <QApplication>
#include <QScreen>
#include <QStyleFactory>

using namespace tidewick;

/// The list that a picker opens.
class TestPickerList : public QObject
{
    Q_OBJECT

private slots:
    void isRoundedAndRaised_data();
    void isRoundedAndRaised();
    void rowsStandOut_data();
    void rowsStandOut();
    void highContrast_data();
    void highContrast();
    void followsTheAppearanceWhileOpen();
    void coversThePickersText_data();
    void coversThePickersText();
    void staysOnTheScreen_data();
    void staysOnTheScreen();
    void longListsScroll();
    void looksTheSameInEveryStyle();

private:
    using Rig = SettingsRig;
};

namespace {

QWidget *popupOf(const Picker *picker)
{
    return picker->view()->window();
}

/// Opens the list and waits until it is laid out.
QWidget *opened(Picker *picker)
{
    picker->showPopup();
    if (!QTest::qWaitForWindowExposed(popupOf(picker)))
        qFatal("The list does not appear");
    return popupOf(picker);
}

QRect placeOf(const Picker *picker, int row)
{
    const QRect place = picker->view()->visualRect(picker->model()->index(row, 0));
    return {picker->view()->viewport()->mapTo(popupOf(picker), place.topLeft()), place.size()};
}

/// The part of a row in which its text is, without the tick.
QImage textOf(const QImage &list, const QRect &row)
{
    return list.copy(row.adjusted(30, 2, -12, -2));
}

QRect onScreen(const QWidget *widget)
{
    return {widget->mapToGlobal(QPoint()), widget->size()};
}

void addRows()
{
    QTest::addColumn<bool>("dark");
    QTest::newRow("light") << false;
    QTest::newRow("dark") << true;
}

} // namespace

void TestPickerList::isRoundedAndRaised_data()
{
    addRows();
}

void TestPickerList::isRoundedAndRaised()
{
    QFETCH(bool, dark);
    Rig rig;
    rig.window->setScheme({dark});
    const QWidget *popup = opened(rig.picker(Rig::AfterFull));
    QImage list(popup->size(), QImage::Format_ARGB32_Premultiplied);
    list.fill(Qt::transparent);
    const_cast<QWidget *>(popup)->render(&list, {}, {}, QWidget::DrawChildren);
    for (const int x : {0, list.width() - 1}) {
        for (const int y : {0, list.height() - 1})
            QCOMPARE(list.pixelColor(x, y).alpha(), 0);
    }
    const QPalette colors = controlPalette({dark});
    const QColor ground = list.pixelColor(list.width() / 2, 3);
    QVERIFY(ground.lightness() >= colors.color(QPalette::Base).lightness() + (dark ? 5 : 0));
    QCOMPARE(list.pixelColor(3, list.height() / 2), ground);
    const QColor border = over(colors.color(QPalette::Dark), ground);
    QVERIFY(distance(list.pixelColor(0, list.height() / 2), border) < 6);
    QVERIFY(distance(list.pixelColor(list.width() / 2, 0), border) < 6);
}

void TestPickerList::rowsStandOut_data()
{
    addRows();
}

void TestPickerList::rowsStandOut()
{
    QFETCH(bool, dark);
    Rig rig("autoStopAfterFullMinutes=60\n");
    rig.window->setScheme({dark});
    Picker *picker = rig.picker(Rig::AfterFull);
    QVERIFY(picker->currentIndex() > 0);
    QWidget *popup = opened(picker);
    picker->view()->setCurrentIndex(picker->model()->index(0, 0));
    const QImage list = popup->grab().toImage();
    const QColor ground = Popups::ground(controlPalette({dark}));
    for (int row = 0; row < picker->count(); ++row) {
        const QImage text = textOf(list, placeOf(picker, row));
        QVERIFY(contrast(inkColor(text), text.pixelColor(0, 0)) >= 4.5);
        const bool isUnderCursor = row == 0;
        QCOMPARE(distance(text.pixelColor(0, 0), ground) > 15, isUnderCursor);
        // The tick, in the accent colour.
        const QRect start(placeOf(picker, row).adjusted(10, 4, 0, -4).topLeft(), QSize(20, 22));
        const QImage tick = list.copy(start);
        const bool isTicked = distance(inkColor(tick), tick.pixelColor(0, 0)) > 100;
        QCOMPARE(isTicked, row == picker->currentIndex());
        if (isTicked)
            QVERIFY(distance(inkColor(tick), controlPalette({dark}).color(QPalette::Link)) < 90);
    }
    // The row under the cursor is rounded and does not reach the edges.
    const QRect first = placeOf(picker, 0);
    QVERIFY(distance(list.pixelColor(first.left() + 3, first.center().y()), ground) < 6);
    QVERIFY(distance(list.pixelColor(first.left() + 8, first.center().y()), ground) > 15);
    QVERIFY(distance(list.pixelColor(first.left() + 5, first.top()), ground) < 6);
}

void TestPickerList::highContrast_data()
{
    addRows();
}

/// The row under the cursor has an edge that everyone sees.
void TestPickerList::highContrast()
{
    QFETCH(bool, dark);
    Rig rig;
    rig.window->setScheme({dark, true});
    Picker *picker = rig.picker(Rig::AfterFull);
    QWidget *popup = opened(picker);
    const QImage list = popup->grab().toImage();
    const QRect current = placeOf(picker, picker->currentIndex());
    const QColor ground = list.pixelColor(list.width() / 2, 3);
    double strongest = 1;
    for (int y = current.top(); y < current.top() + 4; ++y)
        strongest = std::max(strongest, contrast(list.pixelColor(current.center().x(), y), ground));
    QVERIFY(strongest >= 4.5);
    const QImage text = textOf(list, current);
    QVERIFY(contrast(inkColor(text), text.pixelColor(0, 0)) >= 7);
}

void TestPickerList::followsTheAppearanceWhileOpen()
{
    Rig rig;
    QWidget *popup = opened(rig.picker(Rig::AfterFull));
    const auto lightness = [popup] {
        return popup->grab().toImage().pixelColor(popup->width() / 2, 3).lightness();
    };
    QVERIFY(lightness() > 200);
    rig.window->setScheme({true});
    QVERIFY(popup->isVisible());
    QVERIFY(lightness() < 80);
}

void TestPickerList::coversThePickersText_data()
{
    QTest::addColumn<QByteArray>("settings");
    QTest::addColumn<bool>("isRightToLeft");
    for (const bool isRightToLeft : {false, true}) {
        const char *direction = isRightToLeft ? "right to left" : "left to right";
        QTest::addRow("the first, %s", direction) << QByteArray() << isRightToLeft;
        QTest::addRow("another, %s", direction)
            << QByteArray("autoStopAfterFullMinutes=60\n") << isRightToLeft;
    }
}

/// The current entry appears where it stands in the picker.
void TestPickerList::coversThePickersText()
{
    QFETCH(QByteArray, settings);
    QFETCH(bool, isRightToLeft);
    Rig rig(settings);
    rig.window->move(100, 200);
    rig.window->setLayoutDirection(isRightToLeft ? Qt::RightToLeft : Qt::LeftToRight);
    QCoreApplication::processEvents(); // lays out the window
    Picker *picker = rig.picker(Rig::AfterFull);
    const QImage shut = picker->grab().toImage();
    QWidget *popup = opened(picker);
    const QImage list = popup->grab().toImage();
    const QRect row = placeOf(picker, picker->currentIndex());
    // From the beginning of the line to the first ink of the text, on the screen.
    const auto textStart = [&](const QImage &image, const QRect &within) {
        const QColor ground = image.pixelColor(within.center().x(), within.top() + 3);
        for (int along = 0; along < within.width(); ++along) {
            const int x = isRightToLeft ? within.right() - along : within.left() + along;
            for (int y = within.top() + 4; y < within.bottom() - 4; ++y) {
                if (distance(image.pixelColor(x, y), ground) > 200)
                    return x;
            }
        }
        return -1;
    };
    const QRect inPicker =
        shut.rect().adjusted(isRightToLeft ? 30 : 3, 0, isRightToLeft ? -3 : -30, 0);
    const QRect inList = row.adjusted(isRightToLeft ? 0 : 29, 0, isRightToLeft ? -29 : 0, 0);
    QCOMPARE(onScreen(popup).left() + textStart(list, inList),
             onScreen(picker).left() + textStart(shut, inPicker));
    QVERIFY(std::abs(popup->mapToGlobal(row.center()).y() - onScreen(picker).center().y()) <= 1);
}

void TestPickerList::staysOnTheScreen_data()
{
    QTest::addColumn<QPoint>("corner");
    QTest::newRow("top left") << QPoint(-1, -1);
    QTest::newRow("top right") << QPoint(1, -1);
    QTest::newRow("bottom left") << QPoint(-1, 1);
    QTest::newRow("bottom right") << QPoint(1, 1);
}

/// Also while half of the window is beyond the edge.
void TestPickerList::staysOnTheScreen()
{
    QFETCH(QPoint, corner);
    Rig rig("autoStopAfterFullMinutes=60\n");
    const QRect screen = rig.window->screen()->availableGeometry();
    Picker *picker = rig.picker(Rig::AfterFull);
    const QPoint inWindow = picker->mapTo(rig.window.get(), picker->rect().center());
    const QPoint edge(corner.x() < 0 ? screen.left() : screen.right(),
                      corner.y() < 0 ? screen.top() : screen.bottom());
    rig.window->move(edge - inWindow - corner * 5);
    const QWidget *popup = opened(picker);
    QCOMPARE(screen & onScreen(popup), onScreen(popup));
    QVERIFY(popup->height() > 5 * 26);
}

void TestPickerList::longListsScroll()
{
    Rig rig;
    Picker *picker = rig.picker(Rig::AfterFull);
    QList<Choice> choices;
    for (int value = 0; value < 80; ++value)
        choices.append({value, QString::number(value)});
    picker->setMaxVisibleItems(80);
    picker->offer(choices, 40);
    const QWidget *popup = opened(picker);
    QVERIFY(popup->height() <= picker->screen()->availableSize().height());
    // Their arrows.
    const QImage list = const_cast<QWidget *>(popup)->grab().toImage();
    for (const int y : {3, list.height() - 20}) {
        const QImage end = list.copy(40, y, list.width() - 80, 17);
        QVERIFY(distance(inkColor(end), end.pixelColor(0, 0)) > 100);
    }
    QVERIFY(popup->rect().adjusted(0, 10, 0, -10).contains(placeOf(picker, 40)));
}

void TestPickerList::looksTheSameInEveryStyle()
{
    QList<QImage> pictures;
    const QString before = QApplication::style()->objectName();
    for (const QString &style : QStyleFactory::keys()) {
        QApplication::setStyle(style);
        Rig rig;
        pictures.append(opened(rig.picker(Rig::AfterFull))->grab().toImage());
    }
    QApplication::setStyle(before);
    QVERIFY(pictures.size() > 1);
    QCOMPARE(pictures.count(pictures.constFirst()), pictures.size());
}

TIDEWICK_GUI_TEST_MAIN(TestPickerList)
#include "tst_pickerlist.moc"
