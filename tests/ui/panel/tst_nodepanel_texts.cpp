// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "support/Surroundings.h"
#include "ui/panel/PanelRig.h"

#include <QAbstractButton>
#include <QAccessible>
#include <QApplication>
#include <QLabel>

using namespace tidewick;

class TestNodePanelTexts : public QObject
{
    Q_OBJECT

private slots:
    void showsTextsVerbatim_data();
    void showsTextsVerbatim();
    void shortensLongTexts();
    void joinsLines();
    void breaksLongWords();
    void clipsNoText_data();
    void clipsNoText();
    void rowsHaveAccessibleNames();
};

void TestNodePanelTexts::showsTextsVerbatim_data()
{
    QTest::addColumn<QString>("detail");
    for (const char *text :
         {"<b>bold</b><br>", "R&D && more_or_less", "&amp;lt;", "שלום עולם", "👩‍🚀"})
        QTest::newRow(text) << QString::fromUtf8(text);
}

void TestNodePanelTexts::showsTextsVerbatim()
{
    QFETCH(QString, detail);
    PanelRig rig(withDetail(detail));
    QLabel *label = rig.text(detail.toUtf8().constData());
    QCOMPARE(label->accessibleName(), detail);
    QVERIFY(label->toolTip().isEmpty());
    // As wide as its characters, so none of them was interpreted.
    const int wide = QFontMetrics(label->font()).horizontalAdvance(detail);
    QVERIFY(std::abs(drawn(label->grab().toImage()).width() - wide) <= 6);
}

void TestNodePanelTexts::shortensLongTexts()
{
    const QString huge = QStringLiteral("<i>&") + QString(1 << 20, u'x');
    PanelRig rig(withDetail(huge));
    const QLabel *label = rig.text("<i>&xx");
    QCOMPARE(label->accessibleName().size(), 2000);
    QVERIFY(label->accessibleName().endsWith(u'…'));
    QVERIFY(label->toolTip().contains(QStringLiteral("&lt;i&gt;&amp;xx")));
    QVERIFY(label->toolTip().size() > 3000);
    QVERIFY(label->toolTip().size() < 5000);
    // No wider than other tooltips, although the text has no opportunity for a line break.
    QLabel tip(label->toolTip());
    tip.setWordWrap(true);
    QVERIFY(tip.minimumSizeHint().width() < 1000);
    rig.show(everyRow());
    QVERIFY(rig.text("Following")->toolTip().isEmpty());
}

void TestNodePanelTexts::joinsLines()
{
    QStringList lines;
    for (int i = 1; i <= 50; ++i)
        lines.append(QStringLiteral("line <%1>").arg(i));
    PanelRig rig(withDetail(lines.join(u'\n')));
    const QLabel *label = rig.text("line <1>");
    QCOMPARE(label->accessibleName(), lines.join(u' '));
    // The tooltip keeps the lines apart, but shows no more than fit on a screen.
    QVERIFY(label->toolTip().contains(QStringLiteral("line &lt;1&gt;<br>line &lt;2&gt;")));
    QCOMPARE(label->toolTip().count(QStringLiteral("<br>")), 40);
}

void TestNodePanelTexts::breaksLongWords()
{
    PanelRig rig(withDetail(pathOf(300)));
    QLabel *label = rig.text("/ppp");
    const QRect used = drawn(label->grab().toImage());
    QVERIFY(used.height() > 3 * QFontMetrics(label->font()).height());
    QVERIFY(used.right() < label->width() - 1);
}

void TestNodePanelTexts::clipsNoText_data()
{
    QTest::addColumn<qreal>("points");
    for (const qreal points : {6.0, 9.0, 11.0, 16.0, 24.0})
        QTest::addRow("%g", points) << points;
}

void TestNodePanelTexts::clipsNoText()
{
    QFETCH(qreal, points);
    NodeStatus status = withDetail(QStringLiteral("Ägypten, gj ÅÇ"));
    status.storage =
        QStringLiteral("Storage: Ägypten, gj ÅÇ, and on and on until the next line of it");
    PanelRig rig(status);
    QFont font = rig.panel.font();
    font.setPointSizeF(points);
    rig.panel.setFont(font);
    rig.panel.setHint(QStringLiteral("Ägypten, gj ÅÇ"));
    QCoreApplication::processEvents();
    for (QWidget *row : rig.panel.findChildren<QWidget *>()) {
        if (!row->isVisible() || row->accessibleName().isEmpty())
            continue;
        const QImage picture = row->grab().toImage();
        const QRect used = drawn(picture);
        QVERIFY2(used.isValid(), qPrintable(row->accessibleName()));
        QVERIFY2(used.top() >= 0 && used.bottom() < picture.height() - 1
                     && used.right() < picture.width() - 1,
                 qPrintable(row->accessibleName()));
    }
}

void TestNodePanelTexts::rowsHaveAccessibleNames()
{
    NodeStatus status = everyRow();
    status.uptime = QStringLiteral("1 & <2>_");
    PanelRig rig(status);
    const auto *text = QAccessible::queryAccessibleInterface(rig.text("Uptime"));
    QCOMPARE(text->role(), QAccessible::StaticText);
    QCOMPARE(text->text(QAccessible::Name), QStringLiteral("Uptime: 1 & <2>_"));
    auto *command = QAccessible::queryAccessibleInterface(rig.command("Open Log"));
    QCOMPARE(command->role(), QAccessible::Button);
    QCOMPARE(command->text(QAccessible::Name), QStringLiteral("Open Log"));
    command->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
    QTRY_COMPARE(rig.chosen, QList{MenuCommand::OpenLog});
}

TIDEWICK_GUI_TEST_MAIN(TestNodePanelTexts)
#include "tst_nodepanel_texts.moc"
