// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "support/Surroundings.h"
#include "ui/ledger/LedgerRig.h"

#include <QAccessible>
#include <QApplication>

using namespace tidewick;

/// The bars as a screen reader sees them.
class TestLedgerHistogramAccess : public QObject
{
    Q_OBJECT

private slots:
    void isAList();
    void bars_data();
    void bars();
    void barsComeAndGo();
    void positionsOnTheScreen();
    void pressOpens();
    void reportsTheFocusedBar();
    void interfacesGoWithTheWindow();
    void rowsHaveNames();
};

namespace {

QAccessibleInterface *list(const LedgerRig &rig)
{
    return QAccessible::queryAccessibleInterface(&rig.histogram());
}

QStringList names(const LedgerRig &rig)
{
    QStringList names;
    for (int i = 0; i < list(rig)->childCount(); ++i)
        names += list(rig)->child(i)->text(QAccessible::Name);
    return names;
}

} // namespace

void TestLedgerHistogramAccess::isAList()
{
    const LedgerRig rig;
    QCOMPARE(list(rig)->role(), QAccessible::List);
    QCOMPARE(list(rig)->text(QAccessible::Name), QStringLiteral("Transactions per ledger"));
    QVERIFY(list(rig)->state().focusable);
    QCOMPARE(list(rig)->childCount(), 0);
    QCOMPARE(list(rig)->child(0), nullptr);
    QCOMPARE(list(rig)->focusChild(), nullptr);
}

void TestLedgerHistogramAccess::bars_data()
{
    QTest::addColumn<int>("ledgers");
    for (const int ledgers : {1, 2, 60})
        QTest::addRow("%d", ledgers) << ledgers;
}

void TestLedgerHistogramAccess::bars()
{
    QFETCH(int, ledgers);
    LedgerRig rig;
    rig.closeMany(ledgers);
    QCOMPARE(list(rig)->childCount(), ledgers);
    for (const int none : {-1, ledgers, 1000})
        QCOMPARE(list(rig)->child(none), nullptr);
    for (int i = 0; i < ledgers; ++i) {
        QAccessibleInterface *bar = list(rig)->child(i);
        QVERIFY(bar->isValid());
        QCOMPARE(bar, list(rig)->child(i));
        QCOMPARE(bar->parent(), list(rig));
        QCOMPARE(list(rig)->indexOfChild(bar), i);
        QCOMPARE(bar->role(), QAccessible::ListItem);
        QCOMPARE(bar->childCount(), 0);
        QCOMPARE(bar->text(QAccessible::Name), QStringLiteral("Ledger %1, %2 transactions")
                                                   .arg(LedgerRig::firstLedger + i)
                                                   .arg(210 + i * 10));
        QVERIFY(bar->state().focusable && !bar->state().focused && !bar->state().invisible);
    }
    rig.window.hide();
    QVERIFY(list(rig)->child(0)->state().invisible);
}

void TestLedgerHistogramAccess::barsComeAndGo()
{
    LedgerRig rig;
    rig.closeMany(59);
    QAccessibleInterface *oldest = list(rig)->child(0);
    QAccessibleInterface *second = list(rig)->child(1);
    rig.close({7, 8});
    // An item stays with its ledger.
    QCOMPARE(list(rig)->childCount(), 60);
    QVERIFY(!oldest->isValid());
    QCOMPARE(list(rig)->indexOfChild(oldest), -1);
    QCOMPARE(oldest->rect(), QRect());
    QCOMPARE(list(rig)->child(0), second);
    QCOMPARE(second->text(QAccessible::Name), QStringLiteral("Ledger 98765002, 220 transactions"));
    QCOMPARE(names(rig).constLast(), QStringLiteral("Ledger 98765061, 8 transactions"));
    rig.stream.close(LedgerRig::firstLedger + 60, 8, 800'000'300);
    QCOMPARE(names(rig).count(QStringLiteral("Ledger 98765061, 8 transactions")), 2);
}

void TestLedgerHistogramAccess::positionsOnTheScreen()
{
    LedgerRig rig;
    rig.window.move(40, 30);
    rig.closeMany(60);
    const QRect whole = list(rig)->rect();
    QRect before;
    for (int i = 0; i < 60; ++i) {
        const QRect place = list(rig)->child(i)->rect();
        QVERIFY(whole.contains(place));
        QVERIFY(place.left() > before.right());
        before = place;
        QCOMPARE(place.center(), rig.window.mapToGlobal(rig.bar(i)));
        QCOMPARE(list(rig)->childAt(place.center().x(), place.center().y()), list(rig)->child(i));
    }
    QCOMPARE(list(rig)->childAt(whole.left(), whole.top()), nullptr);
    rig.window.resize(1000, 780);
    QCOMPARE(list(rig)->child(0)->rect().center(), rig.window.mapToGlobal(rig.bar(0)));
}

void TestLedgerHistogramAccess::pressOpens()
{
    LedgerRig rig;
    rig.closeMany(3);
    QAccessibleActionInterface *action = list(rig)->child(1)->actionInterface();
    QVERIFY(action);
    QCOMPARE(action->actionNames(), QStringList{QAccessibleActionInterface::pressAction()});
    action->doAction(QStringLiteral("something else"));
    QCOMPARE(rig.opened, QStringList{});
    action->doAction(QAccessibleActionInterface::pressAction());
    QCOMPARE(rig.opened, QStringList{QStringLiteral("https://xrplexplorer.com/ledger/98765002")});
}

void TestLedgerHistogramAccess::reportsTheFocusedBar()
{
    LedgerRig rig;
    rig.closeMany(60);
    const auto isAt = [&](int place) {
        int focused = 0;
        for (int i = 0; i < 60; ++i)
            focused += list(rig)->child(i)->state().focused ? 1 : 0;
        return list(rig)->focusChild() == list(rig)->child(place) && focused == 1
               && list(rig)->child(place)->state().focused;
    };
    rig.key(Qt::Key_Tab);
    QVERIFY(isAt(59));
    rig.key(Qt::Key_Left);
    QVERIFY(isAt(58));
    rig.key(Qt::Key_Home);
    QVERIFY(isAt(0));
    rig.window.setFocus();
    QCOMPARE(list(rig)->focusChild(), nullptr);
    QVERIFY(!list(rig)->child(0)->state().focused);
}

/// A screen reader may use an interface that it kept after the window is gone.
void TestLedgerHistogramAccess::interfacesGoWithTheWindow()
{
    QAccessible::Id id = 0;
    {
        LedgerRig rig;
        rig.closeMany(60);
        id = QAccessible::uniqueId(list(rig)->child(5));
        QVERIFY(QAccessible::accessibleInterface(id));
        rig.key(Qt::Key_Tab);
    }
    QCOMPARE(QAccessible::accessibleInterface(id), nullptr);
}

void TestLedgerHistogramAccess::rowsHaveNames()
{
    LedgerRig rig;
    QAccessibleInterface *rows = QAccessible::queryAccessibleInterface(&rig.list());
    QCOMPARE(rows->text(QAccessible::Name), QStringLiteral("Latest transactions"));
    QCOMPARE(rows->childCount(), 0);
    rig.transact(QStringLiteral("A"), QStringLiteral("Payment"));
    rig.transact(QStringLiteral("B"), QStringLiteral("Offer\nCreate\u202e"),
                 QStringLiteral("tecPATH_DRY"));
    QCOMPARE(rows->childCount(), 2);
    QCOMPARE(rows->child(0)->text(QAccessible::Name),
             QStringLiteral("Offer Create, rHb9CJAWyB4rj91VRWn96DkukG4bwdtyTh, tecPATH_DRY"));
    QCOMPARE(rows->child(1)->text(QAccessible::Name),
             QStringLiteral("Payment, rHb9CJAWyB4rj91VRWn96DkukG4bwdtyTh, tesSUCCESS"));
    QCOMPARE(rows->child(1)->role(), QAccessible::ListItem);
    QCOMPARE(rows->child(1)->rect().center().y(), rig.window.mapToGlobal(rig.row(1)).y());
    rig.key(Qt::Key_Tab);
    rig.key(Qt::Key_Tab);
    rig.key(Qt::Key_Down);
    QVERIFY(rows->child(1)->state().focused);
}

TIDEWICK_GUI_TEST_MAIN(TestLedgerHistogramAccess)
#include "tst_ledgerhistogram_access.moc"
