// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "support/Surroundings.h"
#include "ui/Colors.h"
#include "ui/DrawnTexts.h"
#include "ui/FormRig.h"
#include "ui/controls/ControlPalette.h"
#include "ui/dialogs/AlertRig.h"
#include "ui/dialogs/DialogMark.h"

#include <QApplication>
#include <QPainter>
#include <QScreen>
#include <QScrollBar>
#include <QStyleFactory>
#include <QTextEdit>

using namespace tidewick;

/// How the alerts look: colours, fonts, sizes.
class TestAlertsLook : public QObject
{
    Q_OBJECT

private slots:
    void cleanup() { QApplication::setFont(m_usual); }

    void followsLightAndDark();
    void marksTheFocus();
    void onlyDeletingLooksDangerous();
    void badgeStandsInTheCornerOfTheMark_data();
    void badgeStandsInTheCornerOfTheMark();
    void pathHasAFixedWidthFont();
    void looksTheSameInEveryStyle();
    void longPathIsWrapped();
    void largeFontClipsNothing_data();
    void largeFontClipsNothing();
    void hugeErrorFitsTheScreen();
    void hugeErrorStartsAtItsTop();
    void shortLogHasRoom();
    void rightToLeft();

private:
    static QList<std::function<void(AlertRig &)>> allAlerts();

    QFont m_usual = QApplication::font();
};

namespace {

const QString error = QStringLiteral("The node exited unexpectedly (signal 6).\n\nÄgypten, gj ÅÇ\n"
                                     "terminate called");
const QString advice = QStringLiteral("The store is damaged. “Clear Storage…” repairs it.");

QImage picture(const QWidget *widget)
{
    QWidget *window = widget->window();
    return window->grab({widget->mapTo(window, QPoint()), widget->size()}).toImage();
}

QRect placeOf(const QWidget *widget)
{
    return {widget->mapTo(widget->window(), QPoint()), widget->size()};
}

QRect usualScreen()
{
    return shownAlert()->screen()->availableGeometry();
}

} // namespace

QList<std::function<void(AlertRig &)>> TestAlertsLook::allAlerts()
{
    return {[](AlertRig &rig) { rig.alerts.showError(error, advice); },
            [](AlertRig &rig) { rig.ask(); },
            [](AlertRig &rig) { rig.alerts.offerCopy(QStringLiteral("server_info"), error); }};
}

void TestAlertsLook::followsLightAndDark()
{
    for (const auto &show : allAlerts()) {
        for (const bool isOpenBefore : {true, false}) {
            AlertRig rig;
            if (isOpenBefore) {
                show(rig);
                QCOMPARE(shownAlert()->grab().toImage().pixelColor(1, 1),
                         controlPalette({false}).color(QPalette::Window));
            }
            rig.alerts.setScheme({true});
            if (!isOpenBefore)
                show(rig);
            const QPalette colors = controlPalette({true});
            const QImage dark = shownAlert()->grab().toImage();
            QCOMPARE(dark.pixelColor(1, 1), colors.color(QPalette::Window));
            for (const TextLabel *text : shownAlert()->findChildren<TextLabel *>()) {
                if (text->isVisible())
                    QVERIFY(distance(inkColor(picture(text)), colors.color(text->foregroundRole()))
                            < 24);
            }
            if (const QTextEdit *log = alertLog()) {
                QCOMPARE(picture(log).pixelColor(2, 2), colors.color(QPalette::Base));
                QVERIFY(distance(inkColor(picture(log)), colors.color(QPalette::Text)) < 24);
            }
        }
    }
}

void TestAlertsLook::marksTheFocus()
{
    const QColor ring = controlPalette({false}).color(QPalette::Link);
    const QColor ground = controlPalette({false}).color(QPalette::Window);
    const auto isRinged = [&](const QWidget *widget) {
        const QImage drawn = picture(widget);
        return distance(drawn.pixelColor(drawn.width() / 2, 0), ring) < 60;
    };
    const auto hasHalo = [&](const QWidget *widget) {
        const QPoint above(placeOf(widget).center().x(), placeOf(widget).top() - 2);
        return shownAlert()->grab().toImage().pixelColor(above) != ground;
    };
    AlertRig rig;
    rig.ask();
    const QWidget *cancel = button(*shownAlert(), "Cancel");
    const QWidget *accept = button(*shownAlert(), "Delete");
    QVERIFY(isRinged(cancel) && hasHalo(cancel));
    QVERIFY(!isRinged(accept) && !hasHalo(accept));
    QTest::keyClick(shownAlert()->windowHandle(), Qt::Key_Backtab, Qt::ShiftModifier);
    QVERIFY(isRinged(accept) && hasHalo(accept));
    QVERIFY(!isRinged(cancel) && !hasHalo(cancel));
}

void TestAlertsLook::onlyDeletingLooksDangerous()
{
    for (const bool isDark : {false, true}) {
        const QColor alarm = controlPalette({isDark}).color(QPalette::BrightText);
        const auto isAlarming = [&](const char *name) {
            // Without the border and the ring.
            const QImage drawn = picture(button(*shownAlert(), name));
            return distance(inkColor(drawn.copy(drawn.rect().adjusted(4, 4, -4, -4))), alarm) < 60;
        };
        AlertRig rig;
        rig.alerts.setScheme({isDark});
        rig.ask();
        QVERIFY(isAlarming("Delete"));
        QVERIFY(!isAlarming("Cancel"));
    }
}

void TestAlertsLook::badgeStandsInTheCornerOfTheMark_data()
{
    QTest::addColumn<bool>("isDark");
    QTest::newRow("light") << false;
    QTest::newRow("dark") << true;
}

/// Where there is no badge, the mark is whole, and elsewhere it is the same.
void TestAlertsLook::badgeStandsInTheCornerOfTheMark()
{
    QFETCH(bool, isDark);
    const auto markOf = [](const auto &show) {
        AlertRig rig;
        show(rig);
        return picture(shownAlert()->findChild<DialogMark *>());
    };
    const QImage bare = markOf([&](AlertRig &rig) {
        rig.alerts.setScheme({isDark});
        rig.ask();
    });
    const QImage badged = markOf([&](AlertRig &rig) {
        rig.alerts.setScheme({isDark});
        rig.alerts.showError(error);
    });
    QCOMPARE(badged.size(), bare.size());
    const QColor ground = controlPalette({isDark}).color(QPalette::Window);
    const QColor ink = controlPalette({isDark}).color(QPalette::WindowText);
    QRect changed;
    QRect inked;
    for (int y = 0; y < bare.height(); ++y) {
        for (int x = 0; x < bare.width(); ++x) {
            if (distance(bare.pixelColor(x, y), badged.pixelColor(x, y)) > 6)
                changed |= QRect(x, y, 1, 1);
            if (changed.contains(x, y) && distance(badged.pixelColor(x, y), ink) < 24)
                inked |= QRect(x, y, 1, 1);
        }
    }
    QVERIFY(changed.left() > bare.width() * 3 / 10);
    QVERIFY(changed.top() > bare.height() * 3 / 10);
    // The badge ends where the mark does, and a gap is between them.
    QVERIFY(inked.right() >= bare.width() - 2);
    QVERIFY(inked.bottom() >= bare.height() - 2);
    QCOMPARE(badged.pixelColor(changed.left() + 1, bare.height() - 1), ground);
}

void TestAlertsLook::pathHasAFixedWidthFont()
{
    AlertRig rig;
    const auto widthOf = [&](const QString &text) {
        Confirmation question = AlertRig::usualQuestion();
        question.path = text;
        rig.ask(question);
        double width = 0;
        for (const TextLabel *label : shownAlert()->findChildren<TextLabel *>()) {
            if (label->text() == text)
                width = drawnTexts(*const_cast<TextLabel *>(label)).value(0).rect.width();
        }
        QTest::keyClick(shownAlert()->windowHandle(), Qt::Key_Escape);
        return width;
    };
    const double narrow = widthOf(QStringLiteral("/iiiiiiii"));
    QVERIFY(narrow > 0);
    QCOMPARE(widthOf(QStringLiteral("/WWWWWWWW")), narrow);
}

void TestAlertsLook::looksTheSameInEveryStyle()
{
    const QString before = QApplication::style()->objectName();
    for (const auto &show : allAlerts()) {
        QList<QImage> pictures;
        for (const QString &style : QStyleFactory::keys()) {
            QApplication::setStyle(style);
            AlertRig rig;
            show(rig);
            showActive(*shownAlert());
            pictures.append(shownAlert()->grab().toImage());
        }
        QVERIFY(pictures.size() > 1);
        QCOMPARE(pictures.count(pictures.constFirst()), pictures.size());
    }
    QApplication::setStyle(before);
}

void TestAlertsLook::longPathIsWrapped()
{
    AlertRig rig;
    rig.ask();
    const QSize usual = shownAlert()->size();
    QTest::keyClick(shownAlert()->windowHandle(), Qt::Key_Escape);
    Confirmation question = AlertRig::usualQuestion();
    question.path = u'/' + QString(300, u'x');
    rig.ask(question);
    QCOMPARE(shownAlert()->width(), usual.width());
    QVERIFY(shownAlert()->height() > usual.height());
    QCOMPARE(textFlaws(*shownAlert()), QStringList());
}

void TestAlertsLook::largeFontClipsNothing_data()
{
    QTest::addColumn<bool>("later");
    QTest::newRow("from the start") << false;
    QTest::newRow("while open") << true;
}

void TestAlertsLook::largeFontClipsNothing()
{
    QFETCH(bool, later);
    QFont twice = m_usual;
    twice.setPointSizeF(2 * twice.pointSizeF());
    for (const auto &show : allAlerts()) {
        if (!later)
            QApplication::setFont(twice);
        AlertRig rig;
        show(rig);
        QApplication::setFont(twice);
        QCoreApplication::processEvents();
        QCoreApplication::processEvents();
        QCOMPARE(textFlaws(*shownAlert()), QStringList());
        QVERIFY(usualScreen().contains(shownAlert()->frameGeometry()));
        for (const auto *button : shownAlert()->findChildren<QAbstractButton *>()) {
            QVERIFY(button->width() >= button->sizeHint().width());
            QVERIFY(button->height() >= button->sizeHint().height());
            QVERIFY(shownAlert()->rect().contains(placeOf(button)));
        }
        QApplication::setFont(m_usual);
    }
}

void TestAlertsLook::hugeErrorFitsTheScreen()
{
    AlertRig rig;
    const QString text = QStringLiteral("why\n\n") + (QString(400, u'x') + u'\n').repeated(3000);
    rig.alerts.showError(text);
    QVERIFY(alertLog()->height() <= usualScreen().height() * 6 / 10);
    QVERIFY(alertLog()->height() >= usualScreen().height() * 5 / 10);
    QVERIFY(alertLog()->verticalScrollBar()->maximum() > 0);
    QVERIFY(alertLog()->horizontalScrollBar()->maximum() > 0);
    rig.alerts.showError(text, advice.repeated(20)); // leaves less room for the log
    QTRY_VERIFY(alertLog()->height() < usualScreen().height() * 5 / 10);
    QVERIFY(usualScreen().contains(shownAlert()->frameGeometry()));
    QVERIFY(shownAlert()->rect().contains(placeOf(button(*shownAlert(), "OK"))));
}

void TestAlertsLook::hugeErrorStartsAtItsTop()
{
    AlertRig rig;
    for (int i = 0; i < 2; ++i) {
        rig.alerts.showError(QStringLiteral("why\n\n") + QStringLiteral("line\n").repeated(300));
        QCoreApplication::processEvents();
        QCOMPARE(alertLog()->verticalScrollBar()->value(), 0);
        alertLog()->verticalScrollBar()->setValue(50);
    }
}

void TestAlertsLook::shortLogHasRoom()
{
    AlertRig rig;
    rig.alerts.showError(QStringLiteral("why\n\none line"));
    const int lineSpacing = QFontMetrics(alertLog()->document()->defaultFont()).lineSpacing();
    QVERIFY(alertLog()->height() > 6 * lineSpacing);
    QVERIFY(alertLog()->height() < 12 * lineSpacing);
    const int height = alertLog()->height();
    rig.alerts.showError(QStringLiteral("why\n\n") + QStringLiteral("line\n").repeated(12));
    QTRY_VERIFY(alertLog()->height() > height);
    QTRY_COMPARE(alertLog()->verticalScrollBar()->maximum(), 0);
}

void TestAlertsLook::rightToLeft()
{
    AlertRig rig;
    rig.alerts.showError(error, advice);
    const QSize size = shownAlert()->size();
    const QRect place = placeOf(button(*shownAlert(), "OK"));
    shownAlert()->setLayoutDirection(Qt::RightToLeft);
    QCoreApplication::processEvents();
    QCOMPARE(shownAlert()->size(), size);
    QCOMPARE(placeOf(button(*shownAlert(), "OK")).left(), size.width() - 1 - place.right());
    QCOMPARE(textFlaws(*shownAlert()), QStringList());
}

TIDEWICK_GUI_TEST_MAIN(TestAlertsLook)
#include "tst_alerts_look.moc"
