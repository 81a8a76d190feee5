// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "support/Surroundings.h"
#include "ui/SampleStatus.h"
#include "ui/tray/RowMenu.h"

#include <QApplication>
#include <QSignalSpy>

using namespace tidewick;

/// The menu as Qt draws it. Tests with a tray host read the one on the session bus.
class TestRowMenu : public QObject
{
    Q_OBJECT

private slots:
    void showsTheRows();
    void ampersandsAndUnderscoresStay();
    void longRowsHaveAToolTip();
    void commandsFollowTheRows();
    void equalRowsChangeNothing();
    void openMenuStaysOpen();
};

namespace {

QList<QAction *> shown(const RowMenu &menu)
{
    QList<QAction *> actions = menu.actions();
    actions.removeIf([](const QAction *action) { return !action->isVisible(); });
    return actions;
}

} // namespace

void TestRowMenu::showsTheRows()
{
    RowMenu menu(RowMenu::Drawing::ByUs);
    for (const NodeStatus &status : {NodeStatus(), sampleStatus(), NodeStatus()}) {
        const QList<MenuRow> rows = menuRows(status);
        menu.setRows(rows);
        const QList<QAction *> actions = shown(menu);
        QCOMPARE(actions.size(), rows.size());
        for (qsizetype at = 0; at < rows.size(); ++at) {
            QCOMPARE(actions[at]->text(), rows[at].text);
            QCOMPARE(actions[at]->isSeparator(), rows[at].kind == MenuRow::Kind::Separator);
            QCOMPARE(actions[at]->isEnabled(),
                     rows[at].kind == MenuRow::Kind::Command && rows[at].enabled);
        }
    }
}

void TestRowMenu::ampersandsAndUnderscoresStay()
{
    RowMenu menu(RowMenu::Drawing::ByUs);
    NodeStatus status = sampleStatus();
    status.detail = QStringLiteral("R&D & a_b");
    menu.setRows(menuRows(status));
    QCOMPARE(shown(menu).at(1)->text(), QStringLiteral("R&&D && a_b"));
}

void TestRowMenu::longRowsHaveAToolTip()
{
    RowMenu menu(RowMenu::Drawing::ByUs);
    NodeStatus status = sampleStatus();
    status.detail = QStringLiteral("<b>") + QString(200, u'x');
    menu.setRows(menuRows(status));
    const QAction *detail = shown(menu).at(1);
    QCOMPARE(detail->text(), QStringLiteral("<b>") + QString(116, u'x') + u'…');
    QVERIFY(detail->toolTip().contains(QLatin1String("&lt;b&gt;")));
    QCOMPARE(detail->toolTip().count(u'x'), 200);

    status.detail = QStringLiteral("short");
    menu.setRows(menuRows(status));
    QVERIFY(!detail->toolTip().contains(u'x'));
}

void TestRowMenu::commandsFollowTheRows()
{
    RowMenu menu(RowMenu::Drawing::ByUs);
    menu.setRows(menuRows(NodeStatus()));
    QList<MenuCommand> chosen;
    connect(&menu, &RowMenu::commandChosen, this,
            [&](MenuCommand command) { chosen.append(command); });
    const auto trigger = [&](const QString &text) {
        for (QAction *action : shown(menu)) {
            if (action->text() == text)
                action->trigger();
        }
    };
    trigger(QStringLiteral("Start Node"));
    menu.setRows(menuRows(sampleStatus()));
    trigger(QStringLiteral("Stop Node"));
    trigger(QStringLiteral("Quit"));
    QCOMPARE(chosen, (QList{MenuCommand::StartNode, MenuCommand::StopNode, MenuCommand::Quit}));
}

void TestRowMenu::equalRowsChangeNothing()
{
    RowMenu menu(RowMenu::Drawing::ByUs);
    menu.setRows(menuRows(sampleStatus()));
    int changes = 0;
    for (const QAction *action : menu.actions())
        connect(action, &QAction::changed, this, [&] { ++changes; });
    menu.setRows(menuRows(sampleStatus()));
    QCOMPARE(changes, 0);
    NodeStatus status = sampleStatus();
    status.peers = 7;
    menu.setRows(menuRows(status));
    QCOMPARE(changes, 1);
}

void TestRowMenu::openMenuStaysOpen()
{
    RowMenu menu(RowMenu::Drawing::ByUs);
    menu.setRows(menuRows(sampleStatus()));
    menu.popup({10, 10});
    QVERIFY(QTest::qWaitForWindowExposed(&menu));
    const QSignalSpy hidden(&menu, &QMenu::aboutToHide);
    const QPoint place = menu.pos();
    NodeStatus status = sampleStatus();
    status.uptime = QStringLiteral("3m");
    menu.setRows(menuRows(status));
    QVERIFY(menu.isVisible());
    QCOMPARE(hidden.size(), 0);
    QCOMPARE(menu.pos(), place);
}

TIDEWICK_GUI_TEST_MAIN(TestRowMenu)
#include "tst_rowmenu.moc"
