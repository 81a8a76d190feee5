// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "support/Surroundings.h"
#include "ui/DrawnTexts.h"
#include "ui/ledger/LedgerHeader.h"
#include "ui/ledger/LedgerRig.h"
#include "ui/ledger/LedgerTile.h"
#include "ui/ledger/LedgerTypes.h"

#include <QAccessible>
#include <QApplication>

using namespace tidewick;

/// The window's texts, and when its feed runs.
class TestLedgerWindow : public QObject
{
    Q_OBJECT

private slots:
    void beforeTheFirstLedger();
    void headAndTiles();
    void types();
    void moreTypes_data();
    void moreTypes();
    void typesKeepTheirHeight();
    void connection();
    void accessibleNames();
    void typesAreAList();

    void runsWhileItIsShown();
    void runsWhileItIsMinimised();
    void closes();
    void destroyedInUse_data();
    void destroyedInUse();

    void idlesWhileNothingChanges();
    void paintsOnlyWhatChanged();
    void animatesNothingWhileUnseen();
};

namespace {

QStringList head(const LedgerRig &rig)
{
    return drawnLines(*rig.window.findChild<LedgerHeader *>());
}

/// The title, unit and figure of each tile, from left to right.
QList<QStringList> tiles(const LedgerRig &rig)
{
    QMap<int, QStringList> tiles;
    for (LedgerTile *tile : rig.window.findChildren<LedgerTile *>())
        tiles[tile->x()] = drawnLines(*tile);
    return tiles.values();
}

LedgerTypes &typeCard(const LedgerRig &rig)
{
    return *rig.window.findChild<LedgerTypes *>();
}

/// Reports this number of types, each with one transaction more than the next.
void showTypes(LedgerRig &rig, int types)
{
    rig.close(1);
    for (int type = 0; type < types; ++type)
        for (int i = 0; i < types - type; ++i)
            rig.stream.transact(QStringLiteral("%1-%2").arg(type).arg(i),
                                QStringLiteral("Type%1").arg(type), LedgerRig::firstLedger);
    rig.close(1);
}

} // namespace

void TestLedgerWindow::beforeTheFirstLedger()
{
    const LedgerRig rig;
    QCOMPARE(rig.window.windowTitle(), QStringLiteral("Live Ledger"));
    QCOMPARE(head(rig), (QStringList{QStringLiteral("LIVE LEDGER"), QStringLiteral("Ledger "),
                                     QStringLiteral("waiting…"), QStringLiteral("Connecting…")}));
    QCOMPARE(
        tiles(rig),
        (QList<QStringList>{
            {QStringLiteral("This ledger"), QStringLiteral("transactions"), QStringLiteral("—")},
            {QStringLiteral("Per second"), QStringLiteral("transactions"), QStringLiteral("—")},
            {QStringLiteral("Busiest in view"), QStringLiteral("—")},
        }));
    QCOMPARE(drawnLines(rig.histogram()), QStringList{QStringLiteral("Transactions per ledger")});
    QCOMPARE(drawnLines(typeCard(rig)), (QStringList{QStringLiteral("By type, since opened"),
                                                     QStringLiteral("Waiting for transactions…")}));
}

void TestLedgerWindow::headAndTiles()
{
    LedgerRig rig;
    const auto figures = [&] {
        QStringList last;
        for (const QStringList &tile : tiles(rig))
            last += tile.constLast();
        return last;
    };
    rig.close(7);
    QCOMPARE(head(rig).at(2), QStringLiteral("98765001"));
    QCOMPARE(figures(),
             (QStringList{QStringLiteral("7"), QStringLiteral("—"), QStringLiteral("7")}));
    rig.close({118, 3, 118, 9});
    QCOMPARE(head(rig).at(2), QStringLiteral("98765005"));
    QCOMPARE(figures(),
             (QStringList{QStringLiteral("9"), QStringLiteral("15.5"), QStringLiteral("118")}));
    QCOMPARE(tiles(rig).at(2).at(1), QStringLiteral("ledger #98765002"));
}

void TestLedgerWindow::types()
{
    LedgerRig rig;
    showTypes(rig, 3);
    QCOMPARE(drawnLines(typeCard(rig)),
             (QStringList{QStringLiteral("By type, since opened"), QStringLiteral("Type0"),
                          QStringLiteral("3"), QStringLiteral("Type1"), QStringLiteral("2"),
                          QStringLiteral("Type2"), QStringLiteral("1")}));
}

void TestLedgerWindow::moreTypes_data()
{
    QTest::addColumn<int>("types");
    QTest::addColumn<QString>("remark");
    QTest::newRow("six") << 6 << QStringLiteral("1");
    QTest::newRow("seven") << 7 << QStringLiteral("and 1 more type");
    QTest::newRow("eight") << 8 << QStringLiteral("and 2 more types");
    QTest::newRow("twenty") << 20 << QStringLiteral("and 14 more types");
}

void TestLedgerWindow::moreTypes()
{
    QFETCH(int, types);
    QFETCH(QString, remark);
    LedgerRig rig;
    showTypes(rig, types);
    const QStringList lines = drawnLines(typeCard(rig));
    QCOMPARE(lines.at(11), QStringLiteral("Type5"));
    QCOMPARE(lines.constLast(), remark);
    QCOMPARE(lines.size(), types > 6 ? 14 : 13);
}

/// The widgets below do not move up and down with their number.
void TestLedgerWindow::typesKeepTheirHeight()
{
    LedgerRig rig;
    const int atFirst = typeCard(rig).height();
    showTypes(rig, 9);
    const int full = typeCard(rig).height();
    QVERIFY(full > atFirst);
    rig.closeMany(60);
    QCOMPARE(drawnLines(typeCard(rig)).constLast(), QStringLiteral("Waiting for transactions…"));
    QCOMPARE(typeCard(rig).height(), full);
}

void TestLedgerWindow::connection()
{
    LedgerRig rig;
    rig.stream.say(QStringLiteral(R"({"id":1,"result":{}})"));
    QCOMPARE(head(rig).constLast(), QStringLiteral("Live"));
    rig.close(1);
    rig.stream.fail();
    QCOMPARE(head(rig).constLast(), QStringLiteral("Connecting…"));
    QCOMPARE(head(rig).at(2), QStringLiteral("98765001"));
    rig.stream.clock().advance(std::chrono::seconds(3));
    QCOMPARE(head(rig).constLast(), QStringLiteral("Connecting…"));
    rig.close(1);
    QCOMPARE(head(rig).constLast(), QStringLiteral("Live"));
}

void TestLedgerWindow::accessibleNames()
{
    LedgerRig rig;
    QVERIFY(rig.named("Ledger waiting…, Connecting…").isVisible());
    QVERIFY(rig.named("Per second: — transactions").isVisible());
    showTypes(rig, 7);
    for (const char *name :
         {"Ledger 98765002, Live", "This ledger: 1 transactions", "Per second: 0.2 transactions",
          "Busiest in view: 1 ledger #98765001", "Transactions per ledger", "Latest transactions"})
        QVERIFY(rig.named(name).isVisible());
}

void TestLedgerWindow::typesAreAList()
{
    LedgerRig rig;
    showTypes(rig, 7);
    QWidget &types = rig.named("By type, since opened");
    auto *list = QAccessible::queryAccessibleInterface(&types);
    QCOMPARE(list->role(), QAccessible::List);
    QStringList lines;
    QRect last;
    for (int i = 0; i < list->childCount(); ++i) {
        auto *item = list->child(i);
        QCOMPARE(item->role(), QAccessible::ListItem);
        QVERIFY(item->isValid() && !item->state().invisible);
        QVERIFY(list->rect().contains(item->rect()) && !item->rect().intersects(last));
        QCOMPARE(list->childAt(item->rect().center().x(), item->rect().center().y()), item);
        last = item->rect();
        lines += item->text(QAccessible::Name);
    }
    QCOMPARE(lines.join(QLatin1String(", ")),
             QStringLiteral("Type0 7, Type1 6, Type2 5, Type3 4, Type4 3, Type5 2, "
                            "and 1 more type"));
}

void TestLedgerWindow::runsWhileItIsShown()
{
    LedgerRig rig;
    QCOMPARE(rig.stream.connections(), 1);
    rig.close({5, 6});
    rig.transact(2);
    rig.stream.transact(QStringLiteral("A"), QStringLiteral("Payment"), 1);
    rig.window.hide();
    QVERIFY(rig.stream.wentAway());
    QTRY_VERIFY(!rig.stream.isOpen());
    QCOMPARE(rig.stream.clock().alarms(), 0U);
    QCOMPARE(head(rig).constLast(), QStringLiteral("Connecting…"));

    rig.window.show();
    QCOMPARE(rig.stream.connections(), 2);
    QCOMPARE(head(rig).at(2), QStringLiteral("98765002"));
    rig.flush();
    QCOMPARE(rig.list().model()->rowCount(), 3);
    rig.window.show();
    QCOMPARE(rig.stream.connections(), 2);
    // It was waiting to reconnect.
    rig.stream.fail();
    rig.window.hide();
    QCOMPARE(rig.stream.clock().alarms(), 0U);
    rig.stream.clock().advance(std::chrono::seconds(10));
    QCOMPARE(rig.stream.connections(), 2);
}

void TestLedgerWindow::runsWhileItIsMinimised()
{
    LedgerRig rig;
    rig.window.showMinimized();
    QTRY_VERIFY(rig.window.isMinimized());
    QVERIFY(rig.stream.isOpen() && !rig.stream.wentAway());
    rig.close(5);
    rig.window.showNormal();
    QVERIFY(QTest::qWaitForWindowExposed(&rig.window));
    QCOMPARE(rig.stream.connections(), 1);
    QVERIFY(!rig.stream.wentAway());
    QCOMPARE(head(rig).at(2), QStringLiteral("98765001"));
    // Hiding a minimised window stops it all the same.
    rig.window.showMinimized();
    rig.window.hide();
    QVERIFY(rig.stream.wentAway());
}

void TestLedgerWindow::closes()
{
    LedgerRig rig;
    rig.close(1);
    rig.window.close();
    QVERIFY(rig.stream.wentAway());
    QCOMPARE(rig.stream.clock().alarms(), 0U);
}

void TestLedgerWindow::destroyedInUse_data()
{
    QTest::addColumn<int>("tabs");
    for (const int tabs : {0, 1, 2})
        QTest::addRow("%d", tabs) << tabs;
}

/// While it is shown, animating, hovered and pressed.
void TestLedgerWindow::destroyedInUse()
{
    QFETCH(int, tabs);
    const ScriptedStream stream;
    auto window = std::make_unique<LedgerWindow>([](const QUrl &) { return true; }, stream.host());
    window->resize(800, 780);
    window->show();
    QVERIFY(QTest::qWaitForWindowActive(window.get()));
    for (int i = 0; i < 3; ++i) {
        stream.close(i, i, i);
        stream.transact(QString::number(i), QStringLiteral("Payment"), i);
        stream.clock().advance(std::chrono::milliseconds(400));
    }
    for (int i = 0; i < tabs; ++i)
        QTest::keyClick(window->windowHandle(), Qt::Key_Tab);
    auto &list = *window->findChild<TransactionList *>();
    const QPoint row = list.viewport()->mapTo(window.get(), QPoint(40, 10));
    QTest::mouseMove(window->windowHandle(), row);
    QTest::mousePress(window->windowHandle(), Qt::LeftButton, {}, row);
    stream.close(4, 5, 6);
    window.reset();
    QVERIFY(stream.wentAway());
    QTRY_VERIFY(!stream.isOpen());
    QCOMPARE(stream.clock().alarms(), 0U);
}

void TestLedgerWindow::idlesWhileNothingChanges()
{
    LedgerRig rig;
    rig.closeMany(60);
    rig.transact(40);
    rig.window.setStill(false);
    rig.close(5);
    rig.transact(2);
    const EventCount frames(nullptr, QEvent::Paint);
    const auto seen = [&] { return frames.count(); };
    // Until the animations have finished.
    QTRY_VERIFY([&] {
        const int before = seen();
        QTest::qWait(50);
        return before > 0 && seen() == before;
    }());
    QCOMPARE(rig.stream.clock().alarms(), 0U);
    const int before = seen();
    const EventCount timers(nullptr, QEvent::Timer);
    QTest::qWait(500);
    QCOMPARE(timers.count(), 0);
    QCOMPARE(seen(), before);
}

void TestLedgerWindow::paintsOnlyWhatChanged()
{
    LedgerRig rig;
    rig.closeMany(60);
    rig.transact(40);
    rig.close(700);
    rig.screen();
    std::map<QString, std::unique_ptr<EventCount>> counts;
    const auto watch = [&](const char *name, QWidget &part) {
        counts[QString::fromLatin1(name)] = std::make_unique<EventCount>(&part, QEvent::Paint);
    };
    watch("head", *rig.window.findChild<LedgerHeader *>());
    watch("latest", rig.named("This ledger"));
    watch("rate", rig.named("Per second"));
    watch("busiest", rig.named("Busiest"));
    watch("bars", rig.histogram());
    watch("types", typeCard(rig));
    watch("card", *rig.list().parentWidget());
    watch("rows", *rig.list().viewport());
    watch("window", rig.window);
    const auto painted = [&](const std::function<void()> &change) {
        for (auto &[name, count] : counts)
            count->reset();
        change();
        QCoreApplication::processEvents();
        QStringList names;
        for (auto &[name, count] : counts)
            if (count->count() > 0)
                names += name;
        return names.join(u' ');
    };
    QCOMPARE(painted([&] { rig.transact(3); }), QStringLiteral("rows"));
    QCOMPARE(painted([&] { rig.close(5); }), QStringLiteral("bars head latest rate"));
    QCOMPARE(painted([&] { rig.close(5); }), QStringLiteral("bars head rate"));
    QCOMPARE(painted([&] { rig.pointAt(rig.bar(30)); }), QStringLiteral("bars"));
    QCOMPARE(painted([&] { rig.pointAt(rig.row(1)); }), QStringLiteral("bars rows"));
    QCOMPARE(painted([&] { rig.stream.fail(); }),
             QStringLiteral("bars busiest card head latest rate rows types"));
    QCOMPARE(painted([&] { rig.stream.clock().advance(std::chrono::seconds(1)); }),
             QStringLiteral("head"));
    QCOMPARE(painted([&] { rig.window.setScheme({false}); }), QString());
}

void TestLedgerWindow::animatesNothingWhileUnseen()
{
    LedgerRig rig;
    rig.window.setStill(false);
    rig.closeMany(60);
    rig.transact(20);
    rig.window.showMinimized();
    QTRY_VERIFY(rig.window.isMinimized());
    QCoreApplication::processEvents();
    rig.close(5);
    rig.transact(3);
    QCoreApplication::processEvents();
    EventCount timers(nullptr, QEvent::Timer);
    QTest::qWait(250);
    QCOMPARE(timers.count(), 0);

    rig.window.showNormal();
    rig.close(6);
    rig.transact(3);
    rig.window.hide();
    QCoreApplication::processEvents();
    const EventCount frames(nullptr, QEvent::Paint);
    rig.close(7);
    rig.window.setScheme({true});
    rig.window.resize(900, 800);
    QCoreApplication::processEvents();
    timers.reset();
    QTest::qWait(250);
    QCOMPARE(timers.count(), 0);
    QCOMPARE(frames.count(), 0);
}

TIDEWICK_GUI_TEST_MAIN(TestLedgerWindow)
#include "tst_ledgerwindow.moc"
