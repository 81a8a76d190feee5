// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "support/Surroundings.h"
#include "ui/panel/PanelRig.h"

#include <QAbstractButton>
#include <QApplication>
#include <QClipboard>
#include <QLabel>
#include <QMenu>
#include <QWindow>

using namespace tidewick;

class TestNodePanelCommands : public QObject
{
    Q_OBJECT

private slots:
    void choosesByMouse();
    void choosesByKeyboard_data();
    void choosesByKeyboard();
    void ignoresDisabledCommands();
    void ignoresACommandThatAppearsDuringAClick();
    void choosesOncePerDoubleClick();
    void choosesOncePerKeyPress();
    void minimisesWhenClosed();
    void minimisesWhenClosedByQt();
    void minimisesOnEscape();
    void pointsAtCommands();
    void copiesTheSelection();
    void copiesFromTheContextMenu();
};

namespace {

QList<MenuRow> commands(const NodeStatus &status)
{
    QList<MenuRow> commands;
    for (const MenuRow &row : menuRows(status)) {
        if (row.kind == MenuRow::Kind::Command && row.enabled)
            commands.append(row);
    }
    return commands;
}

} // namespace

void TestNodePanelCommands::choosesByMouse()
{
    for (const NodeStatus &status : {everyRow(), stopped()}) {
        PanelRig rig(status);
        QList<MenuCommand> expected;
        for (const MenuRow &row : commands(status)) {
            rig.click(row.text.toUtf8().constData());
            expected.append(row.command);
        }
        QCOMPARE(rig.chosen, expected);
        QCOMPARE(rig.focused(), QString());
    }
}

void TestNodePanelCommands::choosesByKeyboard_data()
{
    QTest::addColumn<Qt::Key>("key");
    QTest::newRow("Space") << Qt::Key_Space;
    QTest::newRow("Return") << Qt::Key_Return;
    QTest::newRow("Enter") << Qt::Key_Enter;
}

void TestNodePanelCommands::choosesByKeyboard()
{
    QFETCH(Qt::Key, key);
    PanelRig rig;
    QList<MenuCommand> expected;
    for (const MenuRow &row : commands(everyRow())) {
        rig.key(Qt::Key_Tab);
        rig.key(key);
        expected.append(row.command);
    }
    QCOMPARE(rig.chosen, expected);
}

void TestNodePanelCommands::ignoresDisabledCommands()
{
    PanelRig rig(stopping());
    QVERIFY(!rig.command("Stop Node")->isEnabled());
    rig.click("Stop Node");
    rig.command("Stop Node")->click();
    QTest::mouseClick(rig.text("Uptime"), Qt::LeftButton);
    QCOMPARE(rig.chosen, QList<MenuCommand>());
}

/// Between the press and the release of the mouse button, a poll replaces the command.
void TestNodePanelCommands::ignoresACommandThatAppearsDuringAClick()
{
    PanelRig rig(stopped());
    QTest::mousePress(rig.command("Start Node"), Qt::LeftButton);
    rig.show(everyRow());
    QTest::mouseRelease(rig.command("Stop Node"), Qt::LeftButton);
    QCOMPARE(rig.chosen, QList<MenuCommand>());
    rig.click("Stop Node");
    QCOMPARE(rig.chosen, QList{MenuCommand::StopNode});
}

/// A habitual double click must not start the node and stop it again.
void TestNodePanelCommands::choosesOncePerDoubleClick()
{
    PanelRig rig(stopped());
    QObject::connect(&rig.panel, &NodePanel::commandChosen, &rig.panel,
                     [&rig] { rig.show(everyRow()); });
    const QWidget *button = rig.command("Start Node");
    QTest::mouseDClick(rig.panel.windowHandle(), Qt::LeftButton, {},
                       button->mapTo(&rig.panel, button->rect().center()));
    QCOMPARE(rig.chosen, QList{MenuCommand::StartNode});
}

void TestNodePanelCommands::choosesOncePerKeyPress()
{
    PanelRig rig;
    for (const Qt::Key key : {Qt::Key_Return, Qt::Key_Space}) {
        rig.chosen.clear();
        rig.key(Qt::Key_End);
        for (const bool repeated : {false, true, true}) {
            QKeyEvent press(QEvent::KeyPress, key, Qt::NoModifier, QString(), repeated);
            QCoreApplication::sendEvent(rig.command("Quit"), &press);
        }
        QTest::keyRelease(rig.command("Quit"), key);
        QCOMPARE(rig.chosen, QList{MenuCommand::Quit});
    }
}

void TestNodePanelCommands::minimisesWhenClosed()
{
    PanelRig rig;
    const QSignalSpy ended(qApp, &QGuiApplication::lastWindowClosed);
    rig.closeByUser();
    QVERIFY(rig.panel.isVisible());
    QVERIFY(rig.panel.isMinimized());
    rig.show(withoutError());
    QCoreApplication::processEvents();
    QCOMPARE(ended.size(), 0);
    QVERIFY(rig.panel.isMinimized());
}

/// As Qt 6.4 does for a Wayland compositor.
void TestNodePanelCommands::minimisesOnEscape()
{
    PanelRig rig;
    rig.key(Qt::Key_Escape);
    QVERIFY(rig.panel.isMinimized());
}

void TestNodePanelCommands::minimisesWhenClosedByQt()
{
    PanelRig rig;
    QVERIFY(!rig.panel.windowHandle()->close());
    QVERIFY(rig.panel.isVisible());
    QVERIFY(rig.panel.isMinimized());
}

void TestNodePanelCommands::pointsAtCommands()
{
    PanelRig rig(stopping());
    QCOMPARE(rig.command("Quit")->cursor().shape(), Qt::PointingHandCursor);
    QCOMPARE(rig.command("Stop Node")->cursor().shape(), Qt::ArrowCursor);
    QCOMPARE(rig.text("Uptime")->cursor().shape(), Qt::IBeamCursor);
    rig.show(everyRow());
    QCOMPARE(rig.command("Stop Node")->cursor().shape(), Qt::PointingHandCursor);
}

void TestNodePanelCommands::copiesTheSelection()
{
    PanelRig rig;
    QLabel *label = rig.text("Memory");
    QTest::mouseDClick(label, Qt::LeftButton, {}, QPoint(20, label->height() / 2));
    QTest::keyClick(rig.panel.windowHandle(), Qt::Key_C, Qt::ControlModifier);
    QCOMPARE(QGuiApplication::clipboard()->text(), QStringLiteral("Memory"));

    QTest::mousePress(label, Qt::LeftButton, {}, QPoint(0, label->height() / 2));
    QMouseEvent move(QEvent::MouseMove, QPointF(label->width(), label->height() / 2.0),
                     label->mapToGlobal(QPointF(label->width(), label->height() / 2.0)),
                     Qt::NoButton, Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(label, &move);
    QTest::mouseRelease(label, Qt::LeftButton);
    QTest::keyClick(rig.panel.windowHandle(), Qt::Key_C, Qt::ControlModifier);
    QCOMPARE(QGuiApplication::clipboard()->text(),
             QStringLiteral("Memory: 1.24 GB · peak 2.31 GB"));
}

void TestNodePanelCommands::copiesFromTheContextMenu()
{
    PanelRig rig;
    QLabel *label = rig.text("Following");
    QContextMenuEvent event(QContextMenuEvent::Mouse, QPoint(5, 5),
                            label->mapToGlobal(QPoint(5, 5)));
    QCoreApplication::sendEvent(label, &event);
    auto *menu = qobject_cast<QMenu *>(QApplication::activePopupWidget());
    QVERIFY(menu);
    menu->actions().constFirst()->trigger();
    menu->close();
    QCOMPARE(QGuiApplication::clipboard()->text(), QStringLiteral("Following mainnet"));
}

TIDEWICK_GUI_TEST_MAIN(TestNodePanelCommands)
#include "tst_nodepanel_commands.moc"
