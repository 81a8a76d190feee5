// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "support/Surroundings.h"
#include "ui/DrawnTexts.h"
#include "ui/ledger/LedgerRig.h"

#include <QApplication>

using namespace tidewick;

/// The rows, and pointing at and clicking them.
class TestTransactionList : public QObject
{
    Q_OBJECT

private slots:
    void waitsForTransactions();
    void rows();
    void textsFromTheNetwork_data();
    void textsFromTheNetwork();
    void newestFirst();
    void hover();
    void clicks();
    void clickOnARowThatMoves();
    void hashesStayOnePathSegment();
};

namespace {

/// The texts of all visible rows, one list per row.
QList<QStringList> rowTexts(const LedgerRig &rig)
{
    QMap<int, QMap<double, QString>> rows;
    for (const DrawnText &drawn : drawnTexts(*rig.list().viewport())) {
        const QModelIndex row = rig.list().indexAt(drawn.rect.center().toPoint());
        rows[row.row()][drawn.rect.left()] = drawn.text;
    }
    QList<QStringList> texts;
    for (const auto &row : rows)
        texts += row.values();
    return texts;
}

QString pageOf(const QString &hash)
{
    return QStringLiteral("https://xrplexplorer.com/tx/") + hash;
}

bool isHand(const LedgerRig &rig)
{
    return rig.list().viewport()->cursor().shape() == Qt::PointingHandCursor;
}

/// The hash of the highlighted row; empty if there is none.
QString filled(const LedgerRig &rig)
{
    const QImage screen = rig.screen();
    QString filled;
    for (int i = 0; i < rig.list().model()->rowCount(); ++i) {
        // Nothing is drawn between the account and the result.
        const QPoint point = rig.row(i) + QPoint(60, 0);
        if (screen.rect().contains(point) && screen.pixelColor(point) != Palette({false}).surface)
            filled += rig.hashAt(point);
    }
    return filled;
}

} // namespace

void TestTransactionList::waitsForTransactions()
{
    LedgerRig rig;
    QWidget &card = *rig.list().parentWidget();
    QCOMPARE(drawnLines(card), (QStringList{QStringLiteral("Latest transactions"),
                                            QStringLiteral("Waiting for transactions…")}));
    QVERIFY(!rig.list().isVisible());
    rig.stream.transact(QStringLiteral("A"), QStringLiteral("Payment"), 1);
    QVERIFY(!rig.list().isVisible());
    rig.flush();
    QVERIFY(rig.list().isVisible());
    QCOMPARE(drawnLines(card), QStringList{QStringLiteral("Latest transactions")});
}

void TestTransactionList::rows()
{
    LedgerRig rig;
    const QString account = QStringLiteral("rHb9CJAWyB4rj91VRWn96DkukG4bwdtyTh");
    const QString success = QStringLiteral("tesSUCCESS");
    rig.transact(QStringLiteral("A"), QStringLiteral("Payment"), success, account);
    rig.transact(QStringLiteral("B"), QStringLiteral("OfferCreate"),
                 QStringLiteral("tecUNFUNDED_OFFER"), QStringLiteral("r2345678901234"));
    rig.transact(QStringLiteral("C"), QStringLiteral("NFTokenMint"), QStringLiteral("tesSUCCESS "),
                 QStringLiteral("r23456789012345"));
    rig.transact(QStringLiteral("D"), QStringLiteral("Batch"), QString(), QString());
    QCOMPARE(rowTexts(rig), (QList<QStringList>{
                                {QStringLiteral("Batch")},
                                {QStringLiteral("NFTokenMint"), QStringLiteral("r23456…2345"),
                                 QStringLiteral("tesSUCCESS ")},
                                {QStringLiteral("OfferCreate"), QStringLiteral("r2345678901234"),
                                 QStringLiteral("tecUNFUNDED_OFFER")},
                                {QStringLiteral("Payment"), QStringLiteral("rHb9CJ…tyTh")},
                            }));
    // Success is a green mark at the right end, aligned with the result codes.
    const auto green = [&](int row) {
        const QImage screen = rig.screen();
        const int right = rig.list().mapTo(&rig.window, QPoint(rig.list().width(), 0)).x();
        int count = 0;
        for (int x = right - 28; x < right - 8; ++x) {
            const QColor color = screen.pixelColor(x, rig.row(row).y() + 5);
            count += color.green() > color.red() + 20 && color.green() > color.blue() + 20;
        }
        return count > 2;
    };
    QVERIFY(green(3));
    for (const int row : {0, 1, 2})
        QVERIFY(!green(row));
}

void TestTransactionList::textsFromTheNetwork_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("shown");
    const auto row = [](const char *name, const QString &text, const QString &shown) {
        QTest::newRow(name) << text << shown;
    };
    row("markup", QStringLiteral("<b>&amp;</b>"), QStringLiteral("<b>&amp;</b>"));
    row("placeholders", QStringLiteral("%1 %2 %s %n"), QStringLiteral("%1 %2 %s %n"));
    row("line breaks", QStringLiteral("a\nb\r\tc"), QStringLiteral("a b  c"));
    row("bidi overrides", QStringLiteral("\u202ea\u2067b\u202cc"), QStringLiteral("abc"));
    row("separators", QStringLiteral("a\u2028b\u2029c"), QStringLiteral("a b c"));
    row("mnemonic", QStringLiteral("A&B"), QStringLiteral("A&B"));
    row("long", QString(100, u'W'), QString());
    row("lone surrogate", QStringLiteral("a") + QChar(0xd83d), QString());
}

void TestTransactionList::textsFromTheNetwork()
{
    QFETCH(QString, text);
    QFETCH(QString, shown);
    LedgerRig rig;
    rig.close(1);
    rig.transact(QStringLiteral("A"), text, text, text.left(8));
    rig.close(1);
    const QList<DrawnText> drawn = drawnTexts(*rig.list().viewport());
    if (!shown.isEmpty()) {
        QCOMPARE(rowTexts(rig), (QList<QStringList>{{shown, shown.left(8), shown}}));
        QCOMPARE(drawnLines(rig.named("By type")).value(1), shown);
    }
    for (const DrawnText &one : drawn) {
        QVERIFY(one.rect.left() >= 0 && one.rect.right() <= rig.list().viewport()->width());
        QVERIFY(one.rect.height() <= rig.list().visualRect(rig.list().indexAt({5, 5})).height());
        for (const DrawnText &other : drawn)
            QVERIFY(one.rect == other.rect || !one.rect.intersects(other.rect));
    }
}

void TestTransactionList::newestFirst()
{
    LedgerRig rig({800, 1400});
    const auto hashes = [&] {
        QStringList found;
        for (int i = 0; i < rig.list().model()->rowCount(); ++i)
            found += rig.hashAt(rig.row(i));
        return found;
    };
    const auto expected = [](int newest, int oldest) {
        QStringList names;
        for (int i = newest; i >= oldest; --i)
            names += LedgerRig::nameOf(i);
        return names;
    };
    rig.transact(3);
    QCOMPARE(hashes(), expected(2, 0));
    rig.transact(17);
    QCOMPARE(hashes(), expected(19, 0));
    rig.window.resize(800, 2000);
    rig.transact(30);
    QCOMPARE(hashes(), expected(49, 10));
    rig.transact(100);
    QCOMPARE(hashes(), expected(149, 110));
    rig.transact(0);
    QCOMPARE(hashes(), expected(149, 110));
}

void TestTransactionList::hover()
{
    LedgerRig rig;
    rig.transact(3);
    QCOMPARE(filled(rig), QString());
    for (const int row : {0, 2, 1}) {
        rig.pointAt(rig.row(row));
        QCOMPARE(filled(rig), LedgerRig::nameOf(2 - row));
        QVERIFY(isHand(rig));
    }
    // Below the last row.
    rig.pointAt(rig.row(2) + QPoint(0, 28));
    QCOMPARE(filled(rig), QString());
    QVERIFY(!isHand(rig));
    rig.pointAt(rig.row(1));
    rig.pointAt({2, 2});
    QCOMPARE(filled(rig), QString());
    // A row moves under a pointer at rest.
    const QPoint below = rig.row(2) + QPoint(0, 28);
    rig.pointAt(below);
    rig.transact(1);
    QCOMPARE(filled(rig), LedgerRig::nameOf(0));
    QVERIFY(isHand(rig));
}

void TestTransactionList::clicks()
{
    LedgerRig rig;
    rig.transact(3);
    rig.click(rig.row(1));
    QCOMPARE(rig.opened, QStringList{pageOf(LedgerRig::nameOf(1))});
    rig.opened.clear();

    rig.press(rig.row(0));
    rig.release(rig.row(1));
    rig.press(rig.row(0));
    rig.release({2, 2});
    rig.press({2, 2});
    rig.release(rig.row(0));
    rig.click(rig.row(2) + QPoint(0, 28));
    for (const Qt::MouseButton button : {Qt::RightButton, Qt::MiddleButton})
        QTest::mouseClick(rig.window.windowHandle(), button, {}, rig.row(0));
    QCOMPARE(rig.opened, QStringList{});
}

void TestTransactionList::clickOnARowThatMoves()
{
    LedgerRig rig;
    rig.transact(40);
    const QPoint place = rig.row(1);
    const QString pressed = rig.hashAt(place);
    rig.pointAt(place);
    rig.press(place);
    rig.transact(5);
    rig.release(place);
    QCOMPARE(rig.opened, QStringList{pageOf(pressed)});
    rig.opened.clear();
    // The row went away while the button was down; the one there now was not meant.
    rig.press(place);
    rig.transact(40);
    rig.release(place);
    QCOMPARE(rig.opened, QStringList{});
}

void TestTransactionList::hashesStayOnePathSegment()
{
    LedgerRig rig;
    for (const char *hash : {"../../x", "a/b?c#d", "@evil", "a\nb", "ключ", ".."})
        rig.transact(QString::fromUtf8(hash), QStringLiteral("Payment"));
    rig.window.resize(800, 1400);
    for (int row = 5; row >= 0; --row)
        rig.click(rig.row(row));
    QCOMPARE(
        rig.opened,
        (QStringList{pageOf(QStringLiteral("..%2F..%2Fx")), pageOf(QStringLiteral("a%2Fb%3Fc%23d")),
                     pageOf(QStringLiteral("%40evil")), pageOf(QStringLiteral("a%0Ab")),
                     pageOf(QStringLiteral("%D0%BA%D0%BB%D1%8E%D1%87"))}));
}

TIDEWICK_GUI_TEST_MAIN(TestTransactionList)
#include "tst_transactionlist.moc"
