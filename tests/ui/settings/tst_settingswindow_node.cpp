// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "desktop/FileBrowser.h"
#include "platform/files/Files.h"
#include "support/Surroundings.h"
#include "ui/FormRig.h"
#include "ui/controls/ToolTip.h"

#include <QAbstractItemView>
#include <QAccessible>
#include <QApplication>

using namespace tidewick;

/// The settings window together with a node process, and what it asks of the desktop.
class TestSettingsWindowNode : public QObject
{
    Q_OBJECT

private slots:
    void followsTheNode();
    void locksTheGrowthSettingDuringARun();
    void unlocksTheGrowthSettingAfterARun();
    void closesAListThatBecomesLocked();
    void lockingPressesNoNeighbour();
    void anotherStoreHasNoGrowthSetting();
    void choicesApplyFromTheNextStart();
    void revealsTheDataFolder();
    void opensTheConfiguration();
    void reportsWhenNothingOpens();

private:
    using Rig = SettingsRig;
};

namespace {

const QString whileRunning = QStringLiteral("Stop the node to change how often it tidies up.");

} // namespace

void TestSettingsWindowNode::followsTheNode()
{
    Rig rig;
    rig.node.node().start();
    QVERIFY(rig.node.waitForPhase(Phase::Full));
    const NodeStatus &status = rig.node.status();
    QVERIFY(status.freeSpace != NodeStatus::unknown());
    QVERIFY(shownTexts(*rig.window)
                .contains(status.storeSize + QStringLiteral(" · ") + status.freeSpace));
}

void TestSettingsWindowNode::locksTheGrowthSettingDuringARun()
{
    Rig rig;
    const int height = rig.window->height();
    QVERIFY(rig.picker(Rig::RoundGrowth)->isEnabled());
    QVERIFY(!shownTexts(*rig.window).contains(whileRunning));

    rig.node.node().start();
    QVERIFY(!rig.picker(Rig::RoundGrowth)->isEnabled());
    QVERIFY(shownTexts(*rig.window).contains(whileRunning));
    QTRY_VERIFY(rig.window->height() < height);
    for (const auto question : {Rig::AfterFull, Rig::HardCap, Rig::DiskGuard})
        QVERIFY(rig.picker(question)->isEnabled());
}

void TestSettingsWindowNode::unlocksTheGrowthSettingAfterARun()
{
    Rig rig;
    const int height = rig.window->height();
    QVERIFY(rig.node.startUntil(Phase::Full));
    rig.node.node().stop();
    QVERIFY(!rig.picker(Rig::RoundGrowth)->isEnabled());
    QVERIFY(rig.node.waitForPhase(Phase::Stopped));
    QVERIFY(rig.picker(Rig::RoundGrowth)->isEnabled());
    QVERIFY(!shownTexts(*rig.window).contains(whileRunning));
    QTRY_COMPARE(rig.window->height(), height);
}

void TestSettingsWindowNode::closesAListThatBecomesLocked()
{
    Rig rig;
    rig.picker(Rig::RoundGrowth)->showPopup();
    QVERIFY(rig.picker(Rig::RoundGrowth)->view()->isVisible());
    rig.node.node().start();
    QVERIFY(!rig.picker(Rig::RoundGrowth)->view()->isVisible());
}

void TestSettingsWindowNode::lockingPressesNoNeighbour()
{
    Rig rig;
    rig.picker(Rig::RoundGrowth)->setFocus();
    rig.node.node().start();
    rig.key(Qt::Key_Space);
    rig.key(Qt::Key_Return);
    QVERIFY(rig.revealed.isEmpty());
    QCOMPARE(rig.opened, QList<QUrl>());
}

/// Only Mossgrid has a setting for growth.
void TestSettingsWindowNode::anotherStoreHasNoGrowthSetting()
{
    Rig rig;
    rig.window.reset();
    writeFile(rig.node.bundle().resource("build-info"), "store=NuDB\n");
    SettingsHost host;
    host.defaults = rig.defaults;
    rig.window = std::make_unique<SettingsWindow>(rig.node.node(), host);
    showActive(*rig.window);
    QCOMPARE(rig.window->findChildren<Picker *>().size(), 3);
    const QStringList texts = shownTexts(*rig.window);
    QVERIFY(texts.contains(QStringLiteral("Store now")));
    QVERIFY(!texts.contains(QStringLiteral("Tidy up each time the store grows by")));
    rig.node.node().start();
    QVERIFY(rig.node.waitForPhase(Phase::Full));
    QVERIFY(!shownTexts(*rig.window)
                 .contains(QStringLiteral("Stop the node to change how often it tidies up.")));
}

void TestSettingsWindowNode::choicesApplyFromTheNextStart()
{
    Rig rig;
    QTest::keyClick(rig.picker(Rig::RoundGrowth), Qt::Key_Down);
    QVERIFY(rig.node.startUntil(Phase::Full));
    QVERIFY(contentOf(rig.node.data() / "xrpld.cfg").contains("4096"));
}

void TestSettingsWindowNode::revealsTheDataFolder()
{
    Rig rig;
    const QString path = Files::display(rig.node.data());
    QWidget *row = button(*rig.window, "Show in Finder")->parentWidget();
    QCOMPARE(row->toolTip(), ToolTip::plain(path));
    auto *accessible = QAccessible::queryAccessibleInterface(row);
    QCOMPARE(accessible->text(QAccessible::Description), path);
    QTest::mouseClick(button(*rig.window, "Show in Finder"), Qt::LeftButton);
    QCOMPARE(rig.revealed, QList({rig.node.data()}));
    QCOMPARE(rig.opened, QList<QUrl>());
    // If no file browser can reveal the folder, it is opened.
    rig.reveals = false;
    QTest::keyClick(button(*rig.window, "Show in Finder"), Qt::Key_Return);
    QCOMPARE(rig.revealed.size(), 2);
    QCOMPARE(rig.opened, QList({FileBrowser::url(rig.node.data())}));
}

void TestSettingsWindowNode::opensTheConfiguration()
{
    Rig rig;
    QTest::keyClick(button(*rig.window, "View"), Qt::Key_Space);
    QCOMPARE(rig.opened, QList({FileBrowser::url(rig.node.data() / "xrpld.cfg")}));
    QVERIFY(rig.revealed.isEmpty());
}

void TestSettingsWindowNode::reportsWhenNothingOpens()
{
    Rig rig;
    const QString word = QStringLiteral("No program on this desktop opens %1.")
                             .arg(Files::display(rig.node.data() / "xrpld.cfg"));
    rig.opens = false;
    QTest::mouseClick(button(*rig.window, "View"), Qt::LeftButton);
    QCOMPARE(shownTexts(*rig.window).constLast(), word);
    rig.opens = true;
    QTest::mouseClick(button(*rig.window, "View"), Qt::LeftButton);
    QVERIFY(!shownTexts(*rig.window).contains(word));
}

TIDEWICK_LOOPBACK_GUI_TEST_MAIN(TestSettingsWindowNode)
#include "tst_settingswindow_node.moc"
