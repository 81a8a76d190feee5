// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "node/NodeController.h"
#include "node/Settings.h"
#include "support/NodeRig.h"
#include "support/Surroundings.h"

#include <QSignalSpy>

#include <csignal>

using namespace tidewick;
using namespace std::chrono_literals;

/// Tests the signals that the controller sends to its owner, and what the owner may do in a slot.
class TestNodeControllerSlots : public QObject
{
    Q_OBJECT

private slots:
    void init() { m_rig = std::make_unique<NodeRig>(); }
    void cleanup() { m_rig.reset(); }

    void everyStatusIsConsistent();
    void restartedInASlot();
    void destroyedInASlot_data();
    void destroyedInASlot();
    void destroyedWhileConfirming();

    void reportsAnUnexpectedEnd();
    void reportsARefusedStart_data();
    void reportsARefusedStart();
    void doesNotReportABlockedStart();
    void reportsAReachedLimit_data();
    void reportsAReachedLimit();
    void doesNotReportARequestedStop();
    void automaticStopDoesNotMarkTheNextRun();

private:
    bool start(Phase phase)
    {
        m_rig->node().start();
        return m_rig->waitForPhase(phase);
    }

    std::unique_ptr<NodeRig> m_rig;
};

/// No partial change is ever visible: an error has its text, a start its process.
void TestNodeControllerSlots::everyStatusIsConsistent()
{
    m_rig->setScenario("exit=3");
    QList<Phase> phases;
    connect(&m_rig->node(), &NodeController::statusChanged, this, [this, &phases] {
        const NodeStatus &status = m_rig->status();
        QCOMPARE(status.phase == Phase::Error, status.errorText.has_value());
        QCOMPARE(status.hasProcess, status.phase == Phase::Starting);
        if (phases.isEmpty() || phases.constLast() != status.phase)
            phases.append(status.phase);
    });
    QVERIFY(start(Phase::Error));
    QVERIFY(start(Phase::Error));
    QCOMPARE(phases, (QList{Phase::Starting, Phase::Error, Phase::Starting, Phase::Error}));
}

void TestNodeControllerSlots::restartedInASlot()
{
    m_rig->setScenario("exit=3");
    connect(&m_rig->node(), &NodeController::statusChanged, this, [this] {
        if (m_rig->status().phase != Phase::Error)
            return;
        m_rig->setScenario("speed=50 state=full");
        m_rig->node().start();
        m_rig->node().start(); // ignored, as the node is already starting
    });
    QVERIFY(start(Phase::Full));
    QCOMPARE(m_rig->spawned().size(), 2U);
    QVERIFY(m_rig->status().hasProcess);
}

void TestNodeControllerSlots::destroyedInASlot_data()
{
    QTest::addColumn<Phase>("phase");
    for (const Phase phase : {Phase::Starting, Phase::Full, Phase::Stopping, Phase::Stopped})
        QTest::addRow("%s", phaseName(phase)) << phase;
}

void TestNodeControllerSlots::destroyedInASlot()
{
    QFETCH(Phase, phase);
    bool destroyed = false;
    connect(&m_rig->node(), &NodeController::statusChanged, this, [this, phase, &destroyed] {
        if (m_rig->status().phase == phase) {
            destroyed = true;
            m_rig->destroyNode();
        } else if (m_rig->status().phase == Phase::Full) {
            m_rig->node().stop();
        }
    });
    m_rig->node().start();
    QVERIFY(m_rig->runUntil([&] { return destroyed; }));
}

void TestNodeControllerSlots::destroyedWhileConfirming()
{
    const auto answer = std::make_shared<OneShot<bool>>();
    const QString captured(1000, u'x');
    QString seen;
    m_rig->node().setConfirm([answer, captured, &seen](Confirmation) -> QCoro::Task<bool> {
        const bool yes = co_await *answer;
        seen = captured;
        co_return yes;
    });
    m_rig->node().clearStorage();
    m_rig->destroyNode();
    answer->resolve(true);
    QCOMPARE(seen, captured);
}

void TestNodeControllerSlots::reportsAnUnexpectedEnd()
{
    const QSignalSpy spy(&m_rig->node(), &NodeController::endedOnItsOwn);
    QVERIFY(start(Phase::Full));
    QCOMPARE(spy.size(), 0);
    ::kill(m_rig->lastChild(), SIGKILL);
    QVERIFY(m_rig->waitForPhase(Phase::Error));
    QCOMPARE(spy.size(), 1);
}

void TestNodeControllerSlots::reportsARefusedStart_data()
{
    QTest::addColumn<QByteArray>("cause");
    for (const char *cause : {"port", "disk", "executable"})
        QTest::newRow(cause) << QByteArray(cause);
}

void TestNodeControllerSlots::reportsARefusedStart()
{
    QFETCH(QByteArray, cause);
    if (cause == "port")
        m_rig->setPortInUse([](quint16) { return true; });
    else if (cause == "disk")
        m_rig->setFreeGB(1);
    else
        m_rig->setNode(m_rig->data() / "none", {});

    QString detail;
    const QSignalSpy spy(&m_rig->node(), &NodeController::endedOnItsOwn);
    connect(&m_rig->node(), &NodeController::endedOnItsOwn, this,
            [&](Phase, const QString &why) { detail = why; });
    m_rig->node().start();
    QCOMPARE(spy.size(), 1);
    QVERIFY(!detail.isEmpty());
    m_rig->node().start();
    QCOMPARE(spy.size(), 2);
}

void TestNodeControllerSlots::doesNotReportABlockedStart()
{
    const QSignalSpy spy(&m_rig->node(), &NodeController::endedOnItsOwn);
    m_rig->node().setStartBlocked(QStringLiteral("not yet"));
    m_rig->node().start();
    QCOMPARE(m_rig->status().detail, QStringLiteral("not yet"));
    QCOMPARE(spy.size(), 0);
}

void TestNodeControllerSlots::reportsAReachedLimit_data()
{
    QTest::addColumn<bool>("disk");
    QTest::newRow("time") << false;
    QTest::newRow("disk") << true;
}

void TestNodeControllerSlots::reportsAReachedLimit()
{
    QFETCH(bool, disk);
    m_rig->defaults().setInteger(Settings::autoStopHardCapMinutes.key, 60);
    const QSignalSpy spy(&m_rig->node(), &NodeController::endedOnItsOwn);
    QVERIFY(start(Phase::Full));
    if (disk)
        m_rig->setFreeGB(1);
    else
        m_rig->clock().advance(61min);
    QVERIFY(m_rig->waitForPhase(Phase::Stopped));
    QCOMPARE(spy.size(), 1);
    QVERIFY(m_rig->status().detail.startsWith(disk ? QLatin1String("Stopped: only")
                                                   : QLatin1String("Stopped automatically")));
}

void TestNodeControllerSlots::doesNotReportARequestedStop()
{
    const QSignalSpy spy(&m_rig->node(), &NodeController::endedOnItsOwn);
    QVERIFY(start(Phase::Full));
    m_rig->node().stop();
    m_rig->setFreeGB(1); // reached too late to be the reason
    QVERIFY(m_rig->waitForPhase(Phase::Stopped));
    QCOMPARE(spy.size(), 0);
}

void TestNodeControllerSlots::automaticStopDoesNotMarkTheNextRun()
{
    const QSignalSpy spy(&m_rig->node(), &NodeController::endedOnItsOwn);
    QVERIFY(start(Phase::Full));
    m_rig->setFreeGB(1);
    QVERIFY(m_rig->waitForPhase(Phase::Stopped));
    m_rig->setFreeGB(100);
    QVERIFY(start(Phase::Full));
    m_rig->node().stop();
    QVERIFY(m_rig->waitForPhase(Phase::Stopped));
    QCOMPARE(spy.size(), 1);
}

TIDEWICK_LOOPBACK_TEST_MAIN(TestNodeControllerSlots)
#include "tst_nodecontroller_slots.moc"
