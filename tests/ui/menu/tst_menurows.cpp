// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "support/Surroundings.h"
#include "ui/SampleStatus.h"
#include "ui/menu/MenuRows.h"

#include <limits>

using namespace tidewick;

class TestMenuRows : public QObject
{
    Q_OBJECT

private slots:
    void beforeAnything();
    void everything();
    void adviceIsOptional();
    void summaries();
    void titles_data();
    void titles();
    void emptyDetailHasNoRow();
    void ledgerIsALinkWhileItIsKnown();
    void startOrStopFollowsTheProcess_data();
    void startOrStopFollowsTheProcess();
    void copyingNeedsAnAnswer();
    void errorIsShownWhileThereIsOne();
    void textsStayUnchanged();
    void placesAscend();
    void links_data();
    void links();
};

namespace {

NodeStatus running()
{
    NodeStatus status = sampleStatus();
    status.errorText = QStringLiteral("an older error");
    status.timeLeft = QStringLiteral("3h 12m");
    return status;
}

/// A row as a line: "-" for a separator, a command in brackets, "!" before it when disabled.
QString line(const MenuRow &row)
{
    switch (row.kind) {
    case MenuRow::Kind::Separator:
        return QStringLiteral("-");
    case MenuRow::Kind::Text:
        return row.text;
    case MenuRow::Kind::Command:
        return (row.enabled ? QLatin1String("[") : QLatin1String("![")) + row.text + u']';
    }
    Q_UNREACHABLE();
}

QStringList lines(const QList<MenuRow> &rows)
{
    QStringList lines;
    for (const MenuRow &row : rows)
        lines.append(line(row));
    return lines;
}

QStringList lines(const NodeStatus &status)
{
    return lines(menuRows(status));
}

std::optional<MenuRow> rowAt(const NodeStatus &status, MenuPlace place)
{
    for (const MenuRow &row : menuRows(status)) {
        if (row.place == place)
            return row;
    }
    return std::nullopt;
}

} // namespace

void TestMenuRows::beforeAnything()
{
    const QStringList expected{
        QStringLiteral("Stopped"),
        QStringLiteral("-"),
        QStringLiteral("Validated ledger: –"),
        QStringLiteral("Peers: –"),
        QStringLiteral("Uptime: –"),
        QStringLiteral("Memory: –"),
        QStringLiteral("Store: – · –"),
        QStringLiteral("-"),
        QStringLiteral("[Start Node]"),
        QStringLiteral("[Clear Storage…]"),
        QStringLiteral("-"),
        QStringLiteral("[Open Data Folder]"),
        QStringLiteral("[Open Log]"),
        QStringLiteral("![Copy server_info JSON]"),
        QStringLiteral("[Live Ledger…]"),
        QStringLiteral("[Settings…]"),
        QStringLiteral("[About]"),
        QStringLiteral("-"),
        QStringLiteral("[Quit]"),
    };
    QCOMPARE(lines(NodeStatus()), expected);
}

void TestMenuRows::everything()
{
    const QStringList expected{
        QStringLiteral("Full"),
        QStringLiteral("Following mainnet"),
        QStringLiteral("-"),
        QStringLiteral("[Validated ledger: #98765432 (3s ago)]"),
        QStringLiteral("Peers: 21"),
        QStringLiteral("Uptime: 27h 3m"),
        QStringLiteral("Memory: 1.24 GB · peak 2.31 GB"),
        QStringLiteral("Auto-stop in 3h 12m"),
        QStringLiteral("Store: 14.21 GB · 212.4 GB free"),
        QStringLiteral("Storage: next trim after 2.0 GB"),
        QStringLiteral("-"),
        QStringLiteral("[Stop Node]"),
        QStringLiteral("[Clear Storage…]"),
        QStringLiteral("-"),
        QStringLiteral("[Open Data Folder]"),
        QStringLiteral("[Open Log]"),
        QStringLiteral("[Copy server_info JSON]"),
        QStringLiteral("[Show Error…]"),
        QStringLiteral("[Live Ledger…]"),
        QStringLiteral("[Settings…]"),
        QStringLiteral("[About]"),
        QStringLiteral("-"),
        QStringLiteral("[Quit]"),
    };
    QCOMPARE(lines(running()), expected);
    // All positions except the two for advice.
    QCOMPARE(expected.size(), menuPlaceCount - 2);
}

void TestMenuRows::adviceIsOptional()
{
    NodeStatus status = running();
    QCOMPARE(lines(status), lines(rowsWithAdvice(status)));
    const QString text = QStringLiteral("Do <b>this</b> & that.");
    status.advice = Advice{Advice::Cause::WrongClock, text};
    QStringList expected = lines(running());
    QCOMPARE(lines(status), expected);
    expected.insert(2, text);
    QCOMPARE(lines(rowsWithAdvice(status)), expected);
    status.advice->cause = Advice::Cause::NodeMissing;
    expected.insert(3, QStringLiteral("[How to Install…]"));
    QCOMPARE(lines(rowsWithAdvice(status)), expected);
}

void TestMenuRows::summaries()
{
    NodeStatus status;
    QCOMPARE(summary(status), QStringLiteral("Stopped"));
    status.detail = QStringLiteral("1 peers (connected)");
    status.advice = Advice{Advice::Cause::NoPeers, QStringLiteral("Look here.")};
    QCOMPARE(summary(status), QStringLiteral("Stopped · 1 peers (connected) · Look here."));
}

void TestMenuRows::titles_data()
{
    QTest::addColumn<Phase>("phase");
    QTest::addColumn<QString>("expected");
    QTest::newRow("stopped") << Phase::Stopped << QStringLiteral("Stopped");
    QTest::newRow("starting") << Phase::Starting << QStringLiteral("Starting…");
    QTest::newRow("bootstrapping") << Phase::Bootstrapping << QStringLiteral("Bootstrapping…");
    QTest::newRow("connecting") << Phase::Connecting << QStringLiteral("Connecting…");
    QTest::newRow("syncing") << Phase::Syncing << QStringLiteral("Syncing…");
    QTest::newRow("full") << Phase::Full << QStringLiteral("Full");
    QTest::newRow("stopping") << Phase::Stopping << QStringLiteral("Stopping…");
    QTest::newRow("error") << Phase::Error << QStringLiteral("Error");
}

void TestMenuRows::titles()
{
    QFETCH(Phase, phase);
    QFETCH(QString, expected);
    NodeStatus status;
    status.phase = phase;
    const MenuRow title = menuRows(status).constFirst();
    QCOMPARE(title.text, expected);
    QCOMPARE(title.place, MenuPlace::Title);
    QCOMPARE(title.kind, MenuRow::Kind::Text);
    QCOMPARE(title.command, MenuCommand::None);
}

void TestMenuRows::emptyDetailHasNoRow()
{
    NodeStatus status = running();
    QVERIFY(rowAt(status, MenuPlace::Detail));
    status.detail.clear();
    QVERIFY(!rowAt(status, MenuPlace::Detail));
}

void TestMenuRows::ledgerIsALinkWhileItIsKnown()
{
    NodeStatus status = running();
    QCOMPARE(rowAt(status, MenuPlace::Ledger)->command, MenuCommand::OpenLedger);
    status.ledgerSeq.reset();
    const auto row = rowAt(status, MenuPlace::Ledger);
    QCOMPARE(row->kind, MenuRow::Kind::Text);
    QCOMPARE(row->command, MenuCommand::None);
    QCOMPARE(row->text, QStringLiteral("Validated ledger: #98765432 (3s ago)"));
}

void TestMenuRows::startOrStopFollowsTheProcess_data()
{
    QTest::addColumn<Phase>("phase");
    QTest::addColumn<bool>("hasProcess");
    QTest::addColumn<QString>("expected");
    for (const Phase phase : {Phase::Stopped, Phase::Error}) {
        QTest::addRow("%s", phaseName(phase)) << phase << false << QStringLiteral("[Start Node]");
    }
    for (const Phase phase : {Phase::Starting, Phase::Bootstrapping, Phase::Connecting,
                              Phase::Syncing, Phase::Full, Phase::Error}) {
        QTest::addRow("%s, running", phaseName(phase))
            << phase << true << QStringLiteral("[Stop Node]");
    }
    QTest::newRow("stopping") << Phase::Stopping << true << QStringLiteral("![Stop Node]");
}

void TestMenuRows::startOrStopFollowsTheProcess()
{
    QFETCH(Phase, phase);
    QFETCH(bool, hasProcess);
    QFETCH(QString, expected);
    NodeStatus status = running();
    status.phase = phase;
    status.hasProcess = hasProcess;
    const auto row = rowAt(status, MenuPlace::StartOrStop);
    QCOMPARE(line(*row), expected);
    QCOMPARE(row->command, hasProcess ? MenuCommand::StopNode : MenuCommand::StartNode);
}

void TestMenuRows::copyingNeedsAnAnswer()
{
    NodeStatus status = running();
    QVERIFY(rowAt(status, MenuPlace::CopyServerInfo)->enabled);
    status.hasServerInfo = false;
    QVERIFY(!rowAt(status, MenuPlace::CopyServerInfo)->enabled);
}

void TestMenuRows::errorIsShownWhileThereIsOne()
{
    NodeStatus status = running();
    QCOMPARE(rowAt(status, MenuPlace::ShowError)->command, MenuCommand::ShowError);
    status.errorText.reset();
    QVERIFY(!rowAt(status, MenuPlace::ShowError));
}

/// Each face escapes and shortens texts in its own way.
void TestMenuRows::textsStayUnchanged()
{
    NodeStatus status = running();
    status.detail = QStringLiteral("<b>R&D_\n</b>") + QString(5000, u'x');
    QCOMPARE(rowAt(status, MenuPlace::Detail)->text, status.detail);
}

void TestMenuRows::placesAscend()
{
    for (const NodeStatus &status : {NodeStatus(), running()}) {
        int last = -1;
        for (const MenuRow &row : menuRows(status)) {
            QVERIFY(int(row.place) > last);
            last = int(row.place);
        }
    }
}

void TestMenuRows::links_data()
{
    QTest::addColumn<qint64>("sequence");
    QTest::addColumn<QString>("expected");
    QTest::newRow("usual") << qint64(98765432)
                           << QStringLiteral("https://xrpscan.com/ledger/98765432");
    QTest::newRow("zero") << qint64(0) << QStringLiteral("https://xrpscan.com/ledger/0");
    QTest::newRow("largest") << std::numeric_limits<qint64>::max()
                             << QStringLiteral("https://xrpscan.com/ledger/9223372036854775807");
}

void TestMenuRows::links()
{
    QFETCH(qint64, sequence);
    QFETCH(QString, expected);
    NodeStatus status;
    QVERIFY(!ledgerLink(status));
    status.ledgerSeq = sequence;
    QCOMPARE(ledgerLink(status)->toString(), expected);
}

TIDEWICK_TEST_MAIN(TestMenuRows)
#include "tst_menurows.moc"
