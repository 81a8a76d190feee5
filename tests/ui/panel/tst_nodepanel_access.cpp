// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "ui/SpeechLog.h"
#include "ui/panel/PanelRig.h"

#include <QAbstractButton>
#include <QApplication>
#include <QLabel>

using namespace tidewick;

/// What a screen reader says about the panel while its figures change.
class TestNodePanelAccess : public QObject
{
    Q_OBJECT

private slots:
    void keepsQuietAboutFigures();
    void keepsQuietAboutTheFocusedFigure();
    void saysThePhaseOnce();
    void saysAdviceOnce();
    void saysWhatTheFocusedCommandBecomes();
    void saysNothingInTheBackground();
    void saysNothingAgain();
    void pressesButtons();
};

namespace {

NodeStatus atLedger(qint64 ledger)
{
    NodeStatus status = everyRow();
    status.ledgerSeq = ledger;
    status.ledger = QStringLiteral("#%1 (1s ago)").arg(ledger);
    return status;
}

QString nameOf(QWidget *widget)
{
    return QAccessible::queryAccessibleInterface(widget)->text(QAccessible::Name);
}

} // namespace

void TestNodePanelAccess::keepsQuietAboutFigures()
{
    PanelRig rig(atLedger(100));
    SpeechLog log;
    NodeStatus status = atLedger(101);
    status.peers = 7;
    rig.show(status);
    QCOMPARE(log.spoken(), QStringList());
    // Each figure that has changed is reported once, so that it can be read.
    QCOMPARE(log.renamed(), QStringList({QStringLiteral("Validated ledger: #101 (1s ago)"),
                                         QStringLiteral("Peers: 7")}));
    rig.show(status);
    QCOMPARE(log.renamed(), QStringList());
}

void TestNodePanelAccess::keepsQuietAboutTheFocusedFigure()
{
    PanelRig rig(atLedger(100));
    rig.key(Qt::Key_Tab);
    QAbstractButton *ledger = rig.command("Validated ledger");
    QVERIFY(ledger->hasFocus());
    SpeechLog log;
    rig.show(atLedger(101));
    rig.show(atLedger(102));
    QCOMPARE(log.spoken(), QStringList());
    QCOMPARE(log.renamed(), QStringList());
    QCOMPARE(nameOf(ledger), QStringLiteral("Validated ledger: #102 (1s ago)"));

    rig.key(Qt::Key_Tab);
    QCOMPARE(log.renamed(), QStringList(QStringLiteral("Validated ledger: #102 (1s ago)")));
    log.spoken();
    rig.key(Qt::Key_Backtab);
    QCOMPARE(log.spoken(),
             QStringList(QStringLiteral("focus Button Validated ledger: #102 (1s ago)")));
}

void TestNodePanelAccess::saysThePhaseOnce()
{
    PanelRig rig;
    SpeechLog log;
    NodeStatus status = everyRow();
    status.phase = Phase::Syncing;
    status.detail = QStringLiteral("Catching up");
    rig.show(status);
    QCOMPARE(log.spoken(), QStringList(QStringLiteral("notice Syncing…, Catching up")));
    status.detail = QStringLiteral("Catching up, 7 ledgers behind");
    rig.show(status);
    QCOMPARE(log.spoken(), QStringList());
    status.phase = Phase::Error;
    status.detail.clear();
    rig.show(status);
    QCOMPARE(log.spoken(), QStringList(QStringLiteral("notice Error")));
}

void TestNodePanelAccess::saysAdviceOnce()
{
    PanelRig rig;
    SpeechLog log;
    rig.show(withAdvice());
    QCOMPARE(log.spoken(), QStringList(QLatin1String("notice ") + withAdvice().advice->text));
    NodeStatus status = withAdvice();
    status.peers = 1;
    rig.show(status);
    QCOMPARE(log.spoken(), QStringList());
    rig.show(everyRow());
    QCOMPARE(log.spoken(), QStringList());
}

void TestNodePanelAccess::saysWhatTheFocusedCommandBecomes()
{
    NodeStatus status = stopped();
    PanelRig rig(status);
    while (!rig.focused().startsWith(u"Start Node"))
        rig.key(Qt::Key_Down);
    SpeechLog log;
    status.hasProcess = true;
    rig.show(status);
    QCOMPARE(log.spoken(), QStringList(QStringLiteral("notice Stop Node")));
    QVERIFY(log.renamed().contains(QStringLiteral("Stop Node")));
}

void TestNodePanelAccess::saysNothingInTheBackground()
{
    PanelRig rig;
    QWidget other;
    other.show();
    other.activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(&other));
    SpeechLog log;
    rig.show(stopped());
    QCOMPARE(log.spoken(), QStringList());
}

/// A window that is shown again does not repeat its last notice.
void TestNodePanelAccess::saysNothingAgain()
{
    PanelRig rig;
    SpeechLog log;
    rig.show(stopped());
    QVERIFY(log.spoken().constFirst().startsWith(u"notice Stopped"));
    rig.panel.hide();
    rig.panel.show();
    QVERIFY(!log.spoken().join(u'\n').contains(u"notice"));
}

void TestNodePanelAccess::pressesButtons()
{
    PanelRig rig;
    auto *about = QAccessible::queryAccessibleInterface(rig.command("About"))->actionInterface();
    QVERIFY(about->actionNames().contains(QAccessibleActionInterface::pressAction()));
    about->doAction(QAccessibleActionInterface::pressAction());
    QCOMPARE(rig.chosen, QList<MenuCommand>{MenuCommand::About});
}

TIDEWICK_SPEECH_TEST_MAIN(TestNodePanelAccess)
#include "tst_nodepanel_access.moc"
