// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "support/Surroundings.h"
#include "ui/Colors.h"
#include "ui/DrawnTexts.h"
#include "ui/ledger/LedgerHeader.h"
#include "ui/ledger/LedgerRig.h"
#include "ui/ledger/LedgerTile.h"
#include "ui/ledger/LedgerTypes.h"

#include <QApplication>

using namespace tidewick;
using namespace std::chrono_literals;

/// What the window shows once ledgers no longer arrive: how old its figures are.
class TestLedgerAge : public QObject
{
    Q_OBJECT

private slots:
    void saysSinceWhen();
    void countsUp();
    void countsSleep();
    void endsWithTheNextLedger();
    void saysNothingBeforeTheFirstLedger();
    void sleepsWhileNobodyLooks();
    void figuresFade_data();
    void figuresFade();
    void tellsScreenReaders();
};

namespace {

/// The status and, if there is one, the age.
QStringList status(const LedgerRig &rig)
{
    return drawnLines(*rig.window.findChild<LedgerHeader *>()).mid(3);
}

const QString connecting = QStringLiteral("Connecting…");

/// Connected, with 60 ledgers, types and transactions.
void fill(LedgerRig &rig)
{
    rig.fill();
    rig.close(9);
}

/// The least contrast of a text of the widget with what it is drawn on, and the greatest.
std::pair<double, double> contrasts(QWidget &widget, bool dark)
{
    constexpr int ratio = 4;
    QImage image(widget.size() * ratio, QImage::Format_RGB32);
    image.setDevicePixelRatio(ratio);
    image.fill(Palette({dark}).surface);
    widget.render(&image);
    std::pair range(99.0, 0.0);
    for (const DrawnText &text : drawnTexts(widget)) {
        const QRect place = text.rect.toAlignedRect() & widget.rect();
        if (text.text.isEmpty() || !widget.rect().contains(text.ink.toAlignedRect()))
            continue;
        const QImage drawn = image.copy({place.topLeft() * ratio, place.size() * ratio});
        const double seen = contrast(inkColor(drawn), drawn.pixelColor(0, 0));
        range = {std::min(range.first, seen), std::max(range.second, seen)};
    }
    return range;
}

} // namespace

void TestLedgerAge::saysSinceWhen()
{
    LedgerRig rig;
    fill(rig);
    QCOMPARE(status(rig), QStringList{QStringLiteral("Live")});
    rig.stream.clock().advance(4s);
    QCOMPARE(status(rig), QStringList{QStringLiteral("Live")});
    rig.stream.fail();
    QCOMPARE(status(rig), (QStringList{QStringLiteral("last ledger 4 s ago"), connecting}));
}

void TestLedgerAge::countsUp()
{
    LedgerRig rig;
    rig.close(5);
    rig.stream.fail();
    const auto after = [&](std::chrono::nanoseconds time) {
        rig.stream.clock().advance(time);
        return status(rig).constFirst();
    };
    QCOMPARE(after(0s), QStringLiteral("last ledger 0 s ago"));
    QCOMPARE(after(59s), QStringLiteral("last ledger 59 s ago"));
    QCOMPARE(after(1s), QStringLiteral("last ledger 1 min ago"));
    QCOMPARE(after(59s), QStringLiteral("last ledger 1 min ago"));
    QCOMPARE(after(1s), QStringLiteral("last ledger 2 min ago"));
    QCOMPARE(after(57min), QStringLiteral("last ledger 59 min ago"));
    QCOMPARE(after(1min), QStringLiteral("last ledger 1 h ago"));
    QCOMPARE(after(46h), QStringLiteral("last ledger 47 h ago"));
    QCOMPARE(after(1h), QStringLiteral("last ledger 2 days ago"));
    QCOMPARE(after(24h), QStringLiteral("last ledger 3 days ago"));
}

void TestLedgerAge::countsSleep()
{
    LedgerRig rig;
    rig.close(5);
    rig.stream.fail();
    rig.stream.clock().sleep(2h);
    QCOMPARE(status(rig).constFirst(), QStringLiteral("last ledger 2 h ago"));
}

/// A connection alone does not make the figures current.
void TestLedgerAge::endsWithTheNextLedger()
{
    LedgerRig rig;
    rig.close({5, 6});
    rig.stream.fail();
    rig.stream.clock().advance(2min);
    rig.stream.say(QStringLiteral(R"({"id":1,"result":{"ledger_index":98765002}})"));
    QCOMPARE(status(rig),
             (QStringList{QStringLiteral("last ledger 2 min ago"), QStringLiteral("Live")}));
    // Nor does a ledger from before.
    rig.stream.say(QStringLiteral(R"({"id":1001,"result":{"ledger":{"ledger_index":"98765000",
        "close_time":799999996,"transactions":["A"]}}})"));
    QCOMPARE(rig.histogram().ledgers().size(), 3);
    QCOMPARE(status(rig).size(), 2);
    rig.close(7);
    QCOMPARE(status(rig), QStringList{QStringLiteral("Live")});
    QCOMPARE(rig.stream.clock().alarms(), 0U);
    rig.stream.fail();
    QCOMPARE(status(rig).constFirst(), QStringLiteral("last ledger 0 s ago"));
}

void TestLedgerAge::saysNothingBeforeTheFirstLedger()
{
    const LedgerRig rig;
    QCOMPARE(status(rig), QStringList{connecting});
    rig.stream.say(QStringLiteral(R"({"id":1,"result":{}})"));
    rig.stream.fail();
    rig.stream.clock().advance(1min);
    QCOMPARE(status(rig), QStringList{connecting});
}

/// The age sets alarms only while it can be seen; reconnecting sets one in any case.
void TestLedgerAge::sleepsWhileNobodyLooks()
{
    LedgerRig rig;
    rig.close(5);
    rig.stream.fail();
    QCOMPARE(rig.stream.clock().alarms(), 2U);
    rig.window.showMinimized();
    QTRY_VERIFY(rig.window.isMinimized());
    QCOMPARE(rig.stream.clock().alarms(), 1U);
    rig.stream.clock().advance(7min);
    rig.window.showNormal();
    QTRY_VERIFY(!rig.window.isMinimized());
    QTRY_COMPARE(status(rig).constFirst(), QStringLiteral("last ledger 7 min ago"));
    rig.stream.fail();
    QCOMPARE(rig.stream.clock().alarms(), 2U);

    rig.window.hide();
    QCOMPARE(rig.stream.clock().alarms(), 0U);
    rig.stream.clock().advance(1h);
    rig.window.show();
    QCOMPARE(status(rig), (QStringList{QStringLiteral("last ledger 1 h ago"), connecting}));
}

void TestLedgerAge::figuresFade_data()
{
    QTest::addColumn<bool>("dark");
    QTest::newRow("light") << false;
    QTest::newRow("dark") << true;
}

/// They stay readable.
void TestLedgerAge::figuresFade()
{
    QFETCH(bool, dark);
    LedgerRig rig;
    rig.window.setScheme({dark});
    fill(rig);
    QList<QWidget *> parts{rig.window.findChild<LedgerHeader *>(), rig.list().viewport()};
    for (LedgerTile *tile : rig.window.findChildren<LedgerTile *>())
        parts += tile;
    QMap<QWidget *, double> before;
    for (QWidget *part : parts)
        before[part] = contrasts(*part, dark).second;
    rig.stream.fail();
    for (QWidget *part : parts) {
        const auto [least, most] = contrasts(*part, dark);
        QVERIFY2(most < 0.7 * before[part], qPrintable(part->accessibleName()));
        QVERIFY2(least >= 4.5, qPrintable(part->accessibleName()));
    }
    auto &types = *rig.window.findChild<LedgerTypes *>();
    QVERIFY(contrasts(types, dark).first >= 4.5);
    // A row under the pointer stands on a fill.
    rig.pointAt(rig.row(0));
    QVERIFY(contrasts(*rig.list().viewport(), dark).first >= 4.5);
    rig.pointAt({2, 2});
    rig.stream.clock().advance(3s);
    rig.close(9);
    for (QWidget *part : parts)
        QCOMPARE(contrasts(*part, dark).second, before[part]);
}

void TestLedgerAge::tellsScreenReaders()
{
    LedgerRig rig;
    fill(rig);
    const QList<const char *> cards{"This ledger",  "Per second", "Busiest",
                                    "Transactions", "By type",    "Latest transactions"};
    for (const char *card : cards)
        QCOMPARE(rig.named(card).accessibleDescription(), QString());
    rig.stream.fail();
    rig.stream.clock().advance(2min);
    QCOMPARE(rig.named("Ledger ").accessibleDescription(), QStringLiteral("last ledger 2 min ago"));
    const QString old =
        QStringLiteral("Not current: no ledger has arrived since the connection was lost");
    for (const char *card : cards)
        QCOMPARE(rig.named(card).accessibleDescription(), old);
    QCOMPARE(rig.list().accessibleDescription(), old);
    rig.close(9);
    for (const char *card : cards)
        QCOMPARE(rig.named(card).accessibleDescription(), QString());
    QCOMPARE(rig.list().accessibleDescription(), QString());
    QCOMPARE(rig.named("Ledger ").accessibleDescription(), QString());
}

TIDEWICK_GUI_TEST_MAIN(TestLedgerAge)
#include "tst_ledgerage.moc"
