// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "platform/process/StandardStreams.h"
#include "support/Surroundings.h"
#include "ui/terminal/TerminalRig.h"

#include <sys/ioctl.h>

using namespace tidewick;

/// The rows as they appear on a terminal.
class TestTerminalFace : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void widths_data();
    void widths();
    void adviceTakesTheLinesItNeeds();
    void sendsChangesOnly();
    void changesInPlace();
    void staysWithinTheHeight_data();
    void staysWithinTheHeight();
    void terminalsOfUnknownSize();
    void narrowerThenWider();
    void lowerThenHigher();
};

void TestTerminalFace::init()
{
    StandardStreams::prepare();
    qputenv("TERM", "xterm-256color");
}

void TestTerminalFace::widths_data()
{
    QTest::addColumn<int>("columns");
    QTest::addColumn<QString>("detail");
    QTest::addColumn<QString>("detailRow");
    QTest::addColumn<QString>("ledgerRow");
    const QString ledger = QStringLiteral("Validated ledger: #98765432 (3s ago)");
    const auto row = [](const char *name, int columns, const QString &detail,
                        const QString &detailRow, const QString &ledgerRow) {
        QTest::newRow(name) << columns << detail << detailRow << ledgerRow;
    };
    row("wide", 200, QString(300, u'x'), QString(199, u'x') + u'…', ledger);
    row("usual", 80, QString(80, u'x'), QString(80, u'x'), ledger);
    row("narrow", 20, QString(21, u'x'), QString(19, u'x') + u'…',
        QStringLiteral("Validated ledger: #…"));
    row("wide characters", 20, QString(11, u'日'), QString(9, u'日') + u'…',
        QStringLiteral("Validated ledger: #…"));
    row("emoji", 21,
        QStringLiteral("👩‍🚀👩‍🚀👩‍🚀👩‍🚀👩‍🚀👩‍🚀"),
        QStringLiteral("👩‍🚀👩‍🚀👩‍🚀👩‍🚀👩‍🚀…"),
        QStringLiteral("Validated ledger: #9…"));
    row("control characters", 80, QStringLiteral("a\x1b[2Jb\r\nc\u009bd"),
        QStringLiteral("a [2Jb  c d"), ledger);
    row("huge", 80, QString(1 << 20, u'x'), QString(79, u'x') + u'…', ledger);
    row("a letter with a million accents", 80, u'a' + QString(1 << 20, u'\u0301'),
        QStringLiteral("…"), ledger);
}

void TestTerminalFace::widths()
{
    QFETCH(int, columns);
    QFETCH(QString, detail);
    Started started(columns);
    NodeStatus status = sampleStatus();
    status.detail = detail;
    const QList<QString> lines = started.shown(status);
    QCOMPARE(lines.size(), sampleRows().size() + 1);
    QTEST(lines[2], "detailRow");
    QTEST(lines[4], "ledgerRow");
    QCOMPARE(lines.last(), QStringLiteral("Ctrl-C quits"));
    const ScreenModel &screen = started.terminal.screen();
    QCOMPARE(screen.strangeSequences(), QList<QString>());
    QCOMPARE(screen.dimTexts(), QList<QString>{QStringLiteral("Ctrl-C quits")});
    QVERIFY(screen.wraps());
}

void TestTerminalFace::adviceTakesTheLinesItNeeds()
{
    Started started(40);
    NodeStatus status = sampleStatus();
    status.advice = Advice{
        Advice::Cause::NodeMissing,
        QStringLiteral(
            "No valid list of validators since 18 January. Check your network or validators.txt.")};
    QList<QString> rows = sampleRows();
    rows.insert(2, QStringLiteral("No valid list of validators since 18"));
    rows.insert(3, QStringLiteral("January. Check your network or"));
    rows.insert(4, QStringLiteral("validators.txt."));
    QCOMPARE(started.shown(status), prompt + rows);
    QCOMPARE(started.shown(sampleStatus()), prompt + sampleRows());
}

void TestTerminalFace::sendsChangesOnly()
{
    Started started;
    QCOMPARE(started.shown(sampleStatus()), prompt + sampleRows());
    const qsizetype received = started.terminal.received();
    NodeStatus status = sampleStatus();
    status.hasProcess = false;
    status.phase = Phase::Full;
    started.face->show(status);
    QCOMPARE(started.terminal.received(), received);
}

void TestTerminalFace::changesInPlace()
{
    Started started;
    started.shown(sampleStatus());

    NodeStatus status = sampleStatus();
    status.timeLeft = QStringLiteral("59m");
    status.peers = 3;
    QList<QString> rows = sampleRows();
    rows[4] = QStringLiteral("Peers: 3");
    rows.insert(7, QStringLiteral("Auto-stop in 59m"));
    QCOMPARE(started.shown(status), prompt + rows);

    QCOMPARE(started.shown(sampleStatus()), prompt + sampleRows());

    const QList<QString> few{prompt.constFirst(),
                             QStringLiteral("Stopped"),
                             QString(),
                             QStringLiteral("Validated ledger: –"),
                             QStringLiteral("Peers: –"),
                             QStringLiteral("Uptime: –"),
                             QStringLiteral("Memory: –"),
                             QStringLiteral("Store: – · –"),
                             QString(),
                             QStringLiteral("Ctrl-C quits")};
    QCOMPARE(started.shown({}), few);
}

void TestTerminalFace::staysWithinTheHeight_data()
{
    QTest::addColumn<int>("rows");
    QTest::addColumn<QList<QString>>("expected");
    const QList<QString> all = sampleRows();
    QList<QString> withoutBlanks = all;
    withoutBlanks.removeAll(QString());
    QTest::newRow("room for all") << 12 << all;
    QTest::newRow("blank rows go first") << 11 << withoutBlanks;
    QTest::newRow("all other rows still fit") << 10 << withoutBlanks;
    QTest::newRow("the last rows go next") << 6 << withoutBlanks.first(5);
    QTest::newRow("only the title is left") << 2 << withoutBlanks.first(1);
}

void TestTerminalFace::staysWithinTheHeight()
{
    QFETCH(int, rows);
    Started started(80, rows);
    started.face->show({});
    started.face->show(sampleStatus());
    QFETCH(QList<QString>, expected);
    QCOMPARE(started.terminal.screen().everything(), prompt + expected);
}

void TestTerminalFace::terminalsOfUnknownSize()
{
    Started started;
    const winsize none{};
    ::ioctl(started.terminal.descriptor(), TIOCSWINSZ, &none);
    QCOMPARE(started.shown(sampleStatus()), prompt + sampleRows());
}

void TestTerminalFace::narrowerThenWider()
{
    Started started;
    NodeStatus status = sampleStatus();
    status.detail = QString(40, u'日');
    started.shown(status);

    started.terminal.resize(25, 24);
    QVERIFY(started.terminal.screen().everything().size() > sampleRows().size() + 1);
    QList<QString> lines = started.shown(status);
    QCOMPARE(lines.size(), sampleRows().size() + 1);
    QCOMPARE(lines[0], prompt.constFirst());
    QCOMPARE(lines[2], QString(12, u'日') + u'…');
    QCOMPARE(lines[4], QStringLiteral("Validated ledger: #98765…").first(24) + u'…');

    started.terminal.resize(120, 24);
    QList<QString> wide = sampleRows();
    wide[1] = status.detail;
    QCOMPARE(started.shown(status), prompt + wide);
}

void TestTerminalFace::lowerThenHigher()
{
    Started started;
    started.shown(sampleStatus());
    started.terminal.resize(80, 5);
    QList<QString> rows = sampleRows();
    rows.removeAll(QString());
    started.face->show(sampleStatus());
    QCOMPARE(started.terminal.screen().screen(), rows.first(4));

    // The window shows the lines again that it had scrolled out; the rows come below them.
    started.terminal.resize(80, 24);
    started.face->show(sampleStatus());
    QCOMPARE(started.terminal.screen().everything().last(sampleRows().size()), sampleRows());
    started.face->show({});
    QCOMPARE(started.terminal.screen().everything().count(QStringLiteral("Ctrl-C quits")), 1);
}

TIDEWICK_TEST_MAIN(TestTerminalFace)
#include "tst_terminalface.moc"
