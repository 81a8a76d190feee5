// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "support/Surroundings.h"
#include "ui/panel/PanelRig.h"

#include <QAbstractButton>
#include <QApplication>
#include <QLabel>

using namespace tidewick;

class TestNodePanelFocus : public QObject
{
    Q_OBJECT

private slots:
    void choosesNothingByItself();
    void movesThroughTheCommands_data();
    void movesThroughTheCommands();
    void staysOnARowThatChanges();
    void staysOnARowWhileItIsDisabled();
    void movesOnFromARowThatVanishes();
    void focusesNoCommandUnasked();
};

namespace {

/// The texts of the enabled commands.
QStringList names(const NodeStatus &status)
{
    QStringList names;
    for (const MenuRow &row : menuRows(status)) {
        if (row.kind == MenuRow::Kind::Command && row.enabled)
            names.append(row.text);
    }
    return names;
}

} // namespace

/// A window that opens by itself may receive keys meant for another.
void TestNodePanelFocus::choosesNothingByItself()
{
    PanelRig rig;
    QCOMPARE(rig.focused(), QString());
    for (const Qt::Key key : {Qt::Key_Return, Qt::Key_Space, Qt::Key_S, Qt::Key_Q})
        rig.key(key);
    QCOMPARE(rig.chosen, QList<MenuCommand>());
    rig.key(Qt::Key_Tab);
    QCOMPARE(rig.chosen, QList<MenuCommand>());
    QVERIFY(rig.panel.isVisible() && !rig.panel.isMinimized());
    QCOMPARE(rig.focused(), names(everyRow()).constFirst());
}

void TestNodePanelFocus::movesThroughTheCommands_data()
{
    QTest::addColumn<Qt::Key>("key");
    QTest::addColumn<bool>("isDown");
    QTest::newRow("Tab") << Qt::Key_Tab << true;
    QTest::newRow("Down") << Qt::Key_Down << true;
    QTest::newRow("Backtab") << Qt::Key_Backtab << false;
    QTest::newRow("Up") << Qt::Key_Up << false;
}

void TestNodePanelFocus::movesThroughTheCommands()
{
    QFETCH(Qt::Key, key);
    QFETCH(bool, isDown);
    // The ledger's command is created last but comes first; disabled ones are skipped.
    NodeStatus status = stopping();
    status.ledgerSeq.reset();
    PanelRig rig(status);
    rig.show(stopping());
    QStringList expected = names(stopping());
    if (!isDown)
        std::reverse(expected.begin(), expected.end());
    expected.append(expected.constFirst());
    QStringList seen;
    for (qsizetype i = 0; i < expected.size(); ++i) {
        rig.key(key);
        seen.append(rig.focused());
    }
    QCOMPARE(seen, expected);
    rig.key(isDown ? Qt::Key_End : Qt::Key_Home);
    QCOMPARE(rig.focused(), names(stopping()).at(isDown ? expected.size() - 2 : 0));
}

void TestNodePanelFocus::staysOnARowThatChanges()
{
    PanelRig rig(stopped());
    rig.key(Qt::Key_Tab);
    rig.key(Qt::Key_Tab);
    QCOMPARE(rig.focused(), QStringLiteral("Start Node"));
    NodeStatus status = everyRow();
    status.errorText.reset();
    status.storage.reset();
    rig.show(status);
    QCOMPARE(rig.focused(), QStringLiteral("Stop Node"));
    rig.show(stopped());
    QCOMPARE(rig.focused(), QStringLiteral("Start Node"));
}

/// A second Enter after Stop must not clear the storage.
void TestNodePanelFocus::staysOnARowWhileItIsDisabled()
{
    PanelRig rig;
    rig.command("Stop Node")->setFocus(Qt::TabFocusReason);
    rig.show(stopping());
    rig.key(Qt::Key_Return);
    rig.key(Qt::Key_Space);
    QCOMPARE(rig.chosen, QList<MenuCommand>());
    NodeStatus status = stopping();
    status.uptime = QStringLiteral("0s");
    rig.show(status);
    rig.show(stopped());
    QCOMPARE(rig.focused(), QStringLiteral("Start Node"));

    // From there, the arrow keys move to its neighbours.
    for (const auto &[key, neighbour] :
         {std::pair(Qt::Key_Down, QStringLiteral("Clear Storage…")),
          std::pair(Qt::Key_Up, QStringLiteral("Validated ledger: #98765432 (3s ago)"))}) {
        rig.command("Start Node")->setFocus(Qt::TabFocusReason);
        rig.show(stopping());
        rig.key(key);
        QCOMPARE(rig.focused(), neighbour);
        rig.show(stopped());
        QCOMPARE(rig.focused(), neighbour);
    }
}

void TestNodePanelFocus::movesOnFromARowThatVanishes()
{
    PanelRig rig;
    rig.command("Show Error")->setFocus(Qt::TabFocusReason);
    rig.show(withoutError());
    QCOMPARE(rig.focused(), QStringLiteral("Live Ledger…"));
    rig.command("Validated")->setFocus(Qt::TabFocusReason);
    NodeStatus status = withoutError();
    status.ledgerSeq.reset();
    rig.show(status);
    QCOMPARE(rig.focused(), QStringLiteral("Stop Node"));
    rig.command("Quit")->setFocus(Qt::TabFocusReason);
    QList<MenuRow> rows = menuRows(everyRow());
    rows.removeLast();
    rig.panel.setRows(rows);
    QCOMPARE(rig.focused(), QStringLiteral("About"));
    rig.panel.setRows({});
    QCOMPARE(rig.focused(), QString());
    rig.key(Qt::Key_Tab);
    rig.show(everyRow());
    QCOMPARE(rig.focused(), QString());
}

void TestNodePanelFocus::focusesNoCommandUnasked()
{
    PanelRig rig;
    QTest::mouseClick(rig.text("Following"), Qt::LeftButton);
    NodeStatus status = everyRow();
    status.detail.clear();
    rig.show(status);
    QCOMPARE(rig.focused(), QString());
    // The arrow keys start from the text that was clicked.
    QTest::mouseClick(rig.text("Uptime"), Qt::LeftButton);
    rig.key(Qt::Key_Down);
    QCOMPARE(rig.focused(), QStringLiteral("Stop Node"));
}

TIDEWICK_GUI_TEST_MAIN(TestNodePanelFocus)
#include "tst_nodepanel_focus.moc"
