// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "ui/FormRig.h"
#include "ui/SpeechLog.h"

#include <QAbstractItemView>
#include <QApplication>

using namespace tidewick;

/// Pickers as a screen reader sees them, in the Settings window.
class TestPickerAccess : public QObject
{
    Q_OBJECT

private slots:
    void showsItsEntry();
    void offersItsList();
    void speaksWhenFocused();
    void speaksWhatKeysPick_data();
    void speaksWhatKeysPick();
    void speaksOnceWhenTheListChanges();
    void speaksInTheOpenList();
    void speaksWhatOthersStore();
    void isSilentElsewhere();
    void opensByAction();
    void canBeDisabled();

private:
    using Rig = SettingsRig;
};

namespace {

QAccessibleInterface *access(const SettingsRig &rig, SettingsRig::Question question)
{
    return QAccessible::queryAccessibleInterface(rig.picker(question));
}

} // namespace

void TestPickerAccess::showsItsEntry()
{
    const Rig rig("roundGrowthMiB=1536\n");
    const auto *picker = access(rig, Rig::RoundGrowth);
    QCOMPARE(picker->role(), QAccessible::ComboBox);
    QCOMPARE(picker->text(QAccessible::Name),
             QStringLiteral("Tidy up each time the store grows by"));
    QCOMPARE(picker->text(QAccessible::Value), QStringLiteral("1.5 GB"));
    QVERIFY(picker->state().focusable && picker->state().collapsed && !picker->state().editable);

    auto *text = access(rig, Rig::RoundGrowth)->textInterface();
    QVERIFY(text);
    QCOMPARE(text->characterCount(), 6);
    QCOMPARE(text->text(0, 6), QStringLiteral("1.5 GB"));
    QCOMPARE(text->text(0, -1), QStringLiteral("1.5 GB"));
    QCOMPARE(text->text(4, 6), QStringLiteral("GB"));
    QCOMPARE(text->selectionCount(), 0);
}

void TestPickerAccess::offersItsList()
{
    const Rig rig;
    auto *picker = access(rig, Rig::DiskGuard);
    QCOMPARE(picker->childCount(), 1);
    QCOMPARE(picker->child(1), nullptr);
    QAccessibleInterface *list = picker->child(0);
    QCOMPARE(list->role(), QAccessible::List);
    QCOMPARE(list->parent(), picker);
    QCOMPARE(picker->indexOfChild(list), 0);
    QStringList entries;
    for (int i = 0; i < list->childCount(); ++i)
        entries += list->child(i)->text(QAccessible::Name);
    QCOMPARE(entries.join(u','), QStringLiteral("5 GB,10 GB,20 GB,50 GB"));
}

void TestPickerAccess::speaksWhenFocused()
{
    const Rig rig;
    SpeechLog log;
    rig.key(Qt::Key_Tab);
    QCOMPARE(log.spoken(),
             QStringList(QStringLiteral("focus ComboBox Stop after being in sync for Never")));
}

void TestPickerAccess::speaksWhatKeysPick_data()
{
    QTest::addColumn<Qt::Key>("key");
    QTest::addColumn<QString>("entry");
    QTest::newRow("down") << Qt::Key_Down << QStringLiteral("4 hours");
    QTest::newRow("up") << Qt::Key_Up << QStringLiteral("30 minutes");
    QTest::newRow("home") << Qt::Key_Home << QStringLiteral("Never");
    QTest::newRow("end") << Qt::Key_End << QStringLiteral("1 day");
    QTest::newRow("letter") << Qt::Key_N << QStringLiteral("Never");
}

void TestPickerAccess::speaksWhatKeysPick()
{
    QFETCH(Qt::Key, key);
    QFETCH(QString, entry);
    const Rig rig("autoStopAfterFullMinutes=60\n");
    rig.key(Qt::Key_Tab);
    SpeechLog log;
    rig.key(key);
    // Qt looks for a letter in the list, where it goes through the previous entry.
    QCOMPARE(log.spoken().constLast(), QLatin1String("focus ListItem ") + entry);
    auto *list = access(rig, Rig::AfterFull)->child(0);
    for (int i = 0; i < list->childCount(); ++i) {
        const auto *item = list->child(i);
        QCOMPARE(bool(item->state().selected), item->text(QAccessible::Name) == entry);
    }
    // There is nothing to say about a key that changes nothing.
    rig.key(Qt::Key_F5);
    QCOMPARE(log.spoken(), QStringList());
}

/// A value that is not among the usual ones leaves the list as soon as it is given up.
void TestPickerAccess::speaksOnceWhenTheListChanges()
{
    const Rig rig("autoStopAfterFullMinutes=90\n");
    rig.key(Qt::Key_Tab);
    SpeechLog log;
    rig.key(Qt::Key_Down);
    QCOMPARE(rig.entries(Rig::AfterFull).join(u','),
             QStringLiteral("Never,30 minutes,1 hour,4 hours,1 day"));
    QCOMPARE(log.spoken(), QStringList(QStringLiteral("focus ListItem 4 hours")));
}

void TestPickerAccess::speaksInTheOpenList()
{
    const Rig rig("diskGuardFreeGB=20\n");
    Picker *picker = rig.picker(Rig::DiskGuard);
    picker->setFocus();
    SpeechLog log;
    rig.key(Qt::Key_Space);
    QVERIFY(picker->view()->isVisible());
    QVERIFY(access(rig, Rig::DiskGuard)->state().expanded);
    const QStringList spoken = log.spoken();
    QVERIFY(spoken.contains(QStringLiteral("notice expanded")));
    QCOMPARE(spoken.constLast(), QStringLiteral("focus ListItem 20 GB"));
    QTest::keyClick(picker->view(), Qt::Key_Down);
    QCOMPARE(log.spoken(), QStringList(QStringLiteral("focus ListItem 50 GB")));
    QTest::keyClick(picker->view(), Qt::Key_Return);
    QVERIFY(access(rig, Rig::DiskGuard)->state().collapsed);
    QVERIFY(
        log.spoken().constLast().startsWith(u"focus ComboBox Stop if free disk space falls below"));
    QCOMPARE(access(rig, Rig::DiskGuard)->text(QAccessible::Value), QStringLiteral("50 GB"));
    QVERIFY(rig.storedSettings().contains("diskGuardFreeGB=50\n"));
}

void TestPickerAccess::speaksWhatOthersStore()
{
    const Rig rig;
    rig.picker(Rig::DiskGuard)->setFocus();
    SpeechLog log;
    rig.writeSettings("diskGuardFreeGB=15\nautoStopHardCapMinutes=60\n");
    QTRY_COMPARE(rig.picker(Rig::DiskGuard)->currentText(), QStringLiteral("15 GB"));
    QCOMPARE(log.spoken(), QStringList(QStringLiteral("focus ListItem 15 GB")));
}

void TestPickerAccess::isSilentElsewhere()
{
    const Rig rig;
    SpeechLog log;
    rig.writeSettings("diskGuardFreeGB=15\n");
    QTRY_COMPARE(rig.picker(Rig::DiskGuard)->currentText(), QStringLiteral("15 GB"));
    QCOMPARE(log.spoken(), QStringList());
}

void TestPickerAccess::opensByAction()
{
    const Rig rig;
    auto *action = access(rig, Rig::HardCap)->actionInterface();
    const QString menu = QAccessibleActionInterface::showMenuAction();
    QVERIFY(action->actionNames().contains(menu));
    action->doAction(menu);
    QVERIFY(rig.picker(Rig::HardCap)->view()->isVisible());
    action->doAction(menu);
    QVERIFY(!rig.picker(Rig::HardCap)->view()->isVisible());
    rig.picker(Rig::HardCap)->setEnabled(false);
    action->doAction(menu);
    QVERIFY(!rig.picker(Rig::HardCap)->view()->isVisible());
}

void TestPickerAccess::canBeDisabled()
{
    const Rig rig;
    QVERIFY(!access(rig, Rig::RoundGrowth)->state().disabled);
    rig.picker(Rig::RoundGrowth)->setEnabled(false);
    QVERIFY(access(rig, Rig::RoundGrowth)->state().disabled);
    QCOMPARE(access(rig, Rig::RoundGrowth)->text(QAccessible::Value),
             QStringLiteral("2 GB (recommended)"));
}

TIDEWICK_SPEECH_TEST_MAIN(TestPickerAccess)
#include "tst_picker_access.moc"
