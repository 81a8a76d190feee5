// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "support/Surroundings.h"
#include "ui/controls/ControlPalette.h"
#include "ui/panel/PanelRig.h"

#include <QAbstractButton>
#include <QApplication>
#include <QLabel>

using namespace tidewick;

/// The advice in the node panel: a text with its own background, below the status.
class TestNodePanelAdvice : public QObject
{
    Q_OBJECT

private slots:
    void comesAndGoes();
    void hasItsOwnBackground_data();
    void hasItsOwnBackground();
    void canBeReadAndCopied();
    void offersHelp();
    void focusSurvivesAdvice();
};

namespace {

QRect placeOf(const QWidget *widget, const QWidget &panel)
{
    return {widget->mapTo(&panel, QPoint()), widget->size()};
}

} // namespace

void TestNodePanelAdvice::comesAndGoes()
{
    PanelRig rig;
    const int height = rig.panel.height();
    rig.show(withAdvice());
    QCOMPARE(rig.lines(), rowLines(rowsWithAdvice(withAdvice())));
    QVERIFY(rig.panel.height() > height + 2 * rig.panel.fontMetrics().height());
    const QRect advice = placeOf(rig.text("No valid list"), rig.panel);
    QVERIFY(advice.top() > placeOf(rig.text("Following"), rig.panel).bottom());
    QVERIFY(advice.bottom() < placeOf(rig.command("Validated"), rig.panel).top());
    rig.show(everyRow());
    QCOMPARE(rig.panel.height(), height);
    QCOMPARE(rig.lines(), rowLines(menuRows(everyRow())));
}

void TestNodePanelAdvice::hasItsOwnBackground_data()
{
    QTest::addColumn<bool>("dark");
    QTest::newRow("light") << false;
    QTest::newRow("dark") << true;
}

void TestNodePanelAdvice::hasItsOwnBackground()
{
    QFETCH(bool, dark);
    PanelRig rig(withAdvice());
    rig.panel.setScheme({dark});
    const QImage picture = rig.panel.grab().toImage();
    const QRect place = placeOf(rig.text("No valid list"), rig.panel);
    const QColor ground = controlPalette({dark}).color(QPalette::ToolTipBase);
    QCOMPARE(picture.pixelColor(place.left() + 2, place.center().y()), ground);
    QCOMPARE(picture.pixelColor(place.right() - 2, place.center().y()), ground);
    QVERIFY(picture.pixelColor(place.topLeft()) != ground); // round corners
    QVERIFY(picture.pixelColor(place.left() - 2, place.center().y()) != ground);
}

void TestNodePanelAdvice::canBeReadAndCopied()
{
    PanelRig rig(withAdvice());
    QLabel *advice = rig.text("No valid list");
    QCOMPARE(advice->accessibleName(), withAdvice().advice->text);
    QCOMPARE(advice->height(), advice->heightForWidth(advice->width()));
    NodeStatus markup = withAdvice();
    markup.advice->text = QStringLiteral("<b>bold</b> &amp;");
    rig.show(markup);
    QCOMPARE(rig.text("<b>")->accessibleName(), markup.advice->text);
}

void TestNodePanelAdvice::offersHelp()
{
    PanelRig rig(withAdvice(Advice::Cause::NodeMissing));
    rig.click("How to Install");
    QCOMPARE(rig.chosen, QList<MenuCommand>{MenuCommand::InstallNode});
    // It comes first in the tab order.
    rig.key(Qt::Key_Tab);
    QCOMPARE(rig.focused(), QStringLiteral("How to Install…"));
    rig.key(Qt::Key_Return);
    QCOMPARE(rig.chosen.size(), 2);
}

void TestNodePanelAdvice::focusSurvivesAdvice()
{
    PanelRig rig;
    while (rig.focused() != QLatin1String("Stop Node"))
        rig.key(Qt::Key_Tab);
    rig.show(withAdvice(Advice::Cause::NodeMissing));
    QCOMPARE(rig.focused(), QStringLiteral("Stop Node"));
    rig.key(Qt::Key_Home);
    QCOMPARE(rig.focused(), QStringLiteral("How to Install…"));
    // When that command disappears, the next one below it takes the focus.
    rig.show(everyRow());
    QVERIFY(rig.focused().startsWith(QLatin1String("Validated ledger")));
}

TIDEWICK_GUI_TEST_MAIN(TestNodePanelAdvice)
#include "tst_nodepanel_advice.moc"
