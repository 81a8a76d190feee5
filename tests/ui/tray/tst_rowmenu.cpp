// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "support/Surroundings.h"
#include "ui/Colors.h"
#include "ui/SampleStatus.h"
#include "ui/controls/ControlPalette.h"
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
    void textsAreReadable_data();
    void textsAreReadable();
    void textsKeepTheirDirection();
    void onlyCommandsAreHighlighted();
    void keyboardReachesEveryRow();
    void choosingATextDoesNothing();
};

namespace {

QList<QAction *> shown(const RowMenu &menu)
{
    QList<QAction *> actions = menu.actions();
    actions.removeIf([](const QAction *action) { return !action->isVisible(); });
    return actions;
}

/// The part of a picture that differs from its first pixel.
QRect inkOf(const QImage &picture)
{
    QRect ink;
    for (int y = 0; y < picture.height(); ++y)
        for (int x = 0; x < picture.width(); ++x)
            if (distance(picture.pixelColor(x, y), picture.pixelColor(0, 0)) > 100)
                ink |= QRect(x, y, 1, 1);
    return ink;
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

void TestRowMenu::textsAreReadable_data()
{
    QTest::addColumn<bool>("dark");
    QTest::newRow("light") << false;
    QTest::newRow("dark") << true;
}

/// Also while the menu is open as the appearance changes. Only a command that cannot be chosen
/// fades.
void TestRowMenu::textsAreReadable()
{
    QFETCH(bool, dark);
    RowMenu menu(RowMenu::Drawing::ByUs);
    NodeStatus status = sampleStatus();
    status.hasServerInfo = false;
    menu.setRows(menuRows(status));
    menu.setScheme({!dark});
    menu.popup({10, 10});
    QVERIFY(QTest::qWaitForWindowExposed(&menu));
    menu.setScheme({dark});
    const QImage drawn = menu.grab().toImage();
    const QColor ground = drawn.pixelColor(drawn.width() / 2, 3);
    QCOMPARE(ground.lightness() < 128, dark);
    for (QAction *action : shown(menu)) {
        if (action->isSeparator())
            continue;
        const QImage row = drawn.copy(menu.actionGeometry(action));
        QCOMPARE(row.pixelColor(0, row.height() / 2), ground);
        const bool isFaded = action->text() == QLatin1String("Copy server_info JSON");
        QCOMPARE(contrast(inkColor(row), ground) < 4.5, isFaded);
    }
}

/// English texts in a mirrored menu.
void TestRowMenu::textsKeepTheirDirection()
{
    QApplication::setLayoutDirection(Qt::RightToLeft);
    const auto restore = qScopeGuard([] { QApplication::setLayoutDirection(Qt::LeftToRight); });
    RowMenu menu(RowMenu::Drawing::ByUs);
    menu.setRows(menuRows(sampleStatus()));
    menu.popup({10, 10});
    QVERIFY(QTest::qWaitForWindowExposed(&menu));
    const QList<QAction *> actions = shown(menu);
    const auto clear = std::find_if(actions.begin(), actions.end(), [](const QAction *action) {
        return action->text() == QStringLiteral("Clear Storage…");
    });
    QVERIFY(clear != actions.end());
    const QImage row = menu.grab(menu.actionGeometry(*clear)).toImage();
    const QRect text = inkOf(row);
    // The dots of "…" are low, the letter "C" is not.
    QVERIFY(inkOf(row.copy(text.adjusted(text.width() - 5, 0, 0, 0))).top() > text.height() / 2);
    QVERIFY(inkOf(row.copy(text.adjusted(0, 0, 5 - text.width(), 0))).top() < text.height() / 2);
}

void TestRowMenu::onlyCommandsAreHighlighted()
{
    RowMenu menu(RowMenu::Drawing::ByUs);
    menu.setRows(menuRows(sampleStatus()));
    menu.popup({10, 10});
    QVERIFY(QTest::qWaitForWindowExposed(&menu));
    for (QAction *action : shown(menu)) {
        if (action->isSeparator())
            continue;
        const QRect place = menu.actionGeometry(action);
        const auto fill = [&] {
            return menu.grab().toImage().pixelColor(place.left() + 4, place.center().y());
        };
        menu.setActiveAction(nullptr);
        const QColor before = fill();
        menu.setActiveAction(action);
        QCOMPARE(fill() != before, action->isEnabled());
    }
}

/// So that a screen reader reads every row.
void TestRowMenu::keyboardReachesEveryRow()
{
    RowMenu menu(RowMenu::Drawing::ByUs);
    menu.setRows(menuRows(sampleStatus()));
    menu.popup({10, 10});
    QVERIFY(QTest::qWaitForWindowExposed(&menu));
    QStringList reached;
    QStringList expected;
    for (QAction *action : shown(menu)) {
        if (action->isSeparator())
            continue;
        expected.append(action->text());
        QTest::keyClick(&menu, Qt::Key_Down);
        QVERIFY(menu.activeAction());
        reached.append(menu.activeAction()->text());
    }
    QCOMPARE(reached, expected);
}

void TestRowMenu::choosingATextDoesNothing()
{
    RowMenu menu(RowMenu::Drawing::ByUs);
    menu.setRows(menuRows(NodeStatus()));
    menu.popup({10, 10});
    QVERIFY(QTest::qWaitForWindowExposed(&menu));
    const QSignalSpy chosen(&menu, &RowMenu::commandChosen);
    QAction *title = shown(menu).constFirst();
    QTest::mouseClick(&menu, Qt::LeftButton, {}, menu.actionGeometry(title).center());
    QTest::keyClick(&menu, Qt::Key_Return);
    QVERIFY(menu.isVisible());
    QCOMPARE(chosen.size(), 0);
}

TIDEWICK_GUI_TEST_MAIN(TestRowMenu)
#include "tst_rowmenu.moc"
