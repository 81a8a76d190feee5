// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "node/NodeController.h"
#include "support/NodeRig.h"
#include "support/Surroundings.h"

#include <QRegularExpression>

using namespace tidewick;
using namespace std::chrono_literals;

namespace {

QCoro::Task<> noteWhenStopped(NodeController &node, QString name, QStringList &order)
{
    co_await node.stopAndWait(name);
    order += name;
}

} // namespace

/// Tests stopping the node, by request and by force.
class TestNodeControllerStopping : public QObject
{
    Q_OBJECT

private slots:
    void init() { m_rig = std::make_unique<NodeRig>(); }
    void cleanup() { m_rig.reset(); }

    void stopsOverRpcOnceAnswered();
    void stopsBySignalBeforeAnyAnswer();
    void stopsBySignalWhenRpcIsSilent();
    void errorResponseCountsAsAnAnswer();
    void stopWithoutAReason();
    void stopWithoutANode();
    void secondStopChangesNothing();
    void killsAfterNinetySeconds_data();
    void killsAfterNinetySeconds();
    void machineSleepCountsTowardsTheKill();
    void exitStatusOfARequestedStopIsIgnored();
    void waitersResumeInOrder();
    void waitingWithoutANode();
    void waitersOfADestroyedController();
    void waiterMayDestroyTheController();
    void terminatesWhenStopped();
    void plainStopDoesNotTerminate();

private:
    std::unique_ptr<NodeRig> m_rig;
};

void TestNodeControllerStopping::stopsOverRpcOnceAnswered()
{
    QVERIFY(m_rig->startUntil(Phase::Full));
    m_rig->node().stop(QStringLiteral("Enough"));
    QCOMPARE(m_rig->status().phase, Phase::Stopping);
    QCOMPARE(m_rig->status().detail, QStringLiteral("Enough"));
    QVERIFY(m_rig->status().hasProcess);
    QVERIFY(m_rig->waitForPhase(Phase::Stopped));
    QCOMPARE(m_rig->status().detail, QStringLiteral("Enough"));
    QVERIFY(!m_rig->status().hasProcess && !m_rig->status().errorText);
    QCOMPARE(m_rig->noted("RPCHandler:NFO stop"), 1);
    QCOMPARE(m_rig->noted("signal"), 0);
    QCOMPARE(m_rig->clock().alarms(), 0U); // no further poll or kill is pending
}

void TestNodeControllerStopping::stopsBySignalBeforeAnyAnswer()
{
    m_rig->setScenario("speed=50 listen=no");
    m_rig->node().start();
    QVERIFY(m_rig->waitUntil([&] { return m_rig->noted("Application starting") == 1; }));
    m_rig->node().stop();
    QVERIFY(m_rig->waitUntil([&] { return !m_rig->status().hasProcess; }));
    QCOMPARE(m_rig->status().phase, Phase::Stopped);
    QCOMPARE(m_rig->noted("signal 15"), 1);
}

void TestNodeControllerStopping::stopsBySignalWhenRpcIsSilent()
{
    m_rig->setScenario("speed=50 state=full rpc.stop=silent");
    QVERIFY(m_rig->startUntil(Phase::Full));
    m_rig->node().stop();
    QVERIFY(m_rig->waitUntil([&] { return !m_rig->status().hasProcess; }));
    QCOMPARE(m_rig->status().phase, Phase::Stopped);
    QCOMPARE(m_rig->noted("RPCHandler:NFO stop"), 1);
    QCOMPARE(m_rig->noted("signal 15"), 1);
}

void TestNodeControllerStopping::errorResponseCountsAsAnAnswer()
{
    m_rig->setScenario("speed=50 state=full rpc.stop=error stop=hang");
    QVERIFY(m_rig->startUntil(Phase::Full));
    m_rig->node().stop();
    QVERIFY(m_rig->waitUntil([&] { return m_rig->noted("RPCHandler:NFO stop") == 1; }));
    m_rig->clock().advance(90s);
    QVERIFY(m_rig->waitUntil([&] { return !m_rig->status().hasProcess; }));
    QCOMPARE(m_rig->noted("signal 15"), 0);
    QVERIFY(m_rig->log().contains("sending SIGKILL"));
}

void TestNodeControllerStopping::stopWithoutAReason()
{
    QVERIFY(m_rig->startUntil(Phase::Full));
    m_rig->node().stop();
    QCOMPARE(m_rig->status().detail, QStringLiteral("Stopping"));
    QVERIFY(m_rig->waitForPhase(Phase::Stopped));
    QCOMPARE(m_rig->status().detail, QStringLiteral("Stopped"));
}

void TestNodeControllerStopping::stopWithoutANode()
{
    QSignalSpy changes(&m_rig->node(), &NodeController::statusChanged);
    m_rig->node().stop(QStringLiteral("x"));
    QCOMPARE(changes.count(), 0);
}

void TestNodeControllerStopping::secondStopChangesNothing()
{
    m_rig->setScenario("speed=50 listen=no sigterm=ignore");
    m_rig->node().start();
    QVERIFY(m_rig->waitUntil([&] { return m_rig->noted("Application starting") == 1; }));
    m_rig->node().stop(QStringLiteral("first"));
    QVERIFY(m_rig->waitUntil([&] { return m_rig->noted("signal 15") == 1; }));
    m_rig->clock().advance(80s);
    m_rig->node().stop(QStringLiteral("second"));
    QCOMPARE(m_rig->status().detail, QStringLiteral("first"));
    m_rig->clock().advance(10s); // ninety seconds after the first stop
    QVERIFY(m_rig->waitUntil([&] { return !m_rig->status().hasProcess; }));
    QCOMPARE(m_rig->status().detail, QStringLiteral("first"));
    QCOMPARE(m_rig->noted("signal 15"), 1);
}

void TestNodeControllerStopping::killsAfterNinetySeconds_data()
{
    QTest::addColumn<QByteArray>("scenario");
    QTest::addColumn<int>("signalsBefore");
    QTest::newRow("answers the stop but keeps running") << QByteArray("stop=hang") << 0;
    QTest::newRow("ignores both") << QByteArray("rpc.stop=silent sigterm=ignore") << 1;
}

void TestNodeControllerStopping::killsAfterNinetySeconds()
{
    QFETCH(QByteArray, scenario);
    QFETCH(int, signalsBefore);
    m_rig->setScenario("speed=50 state=full " + scenario);
    QVERIFY(m_rig->startUntil(Phase::Full));
    m_rig->node().stop(QStringLiteral("Enough"));
    QVERIFY(m_rig->waitUntil([&] {
        return m_rig->noted("RPCHandler:NFO stop") == 1
               && m_rig->noted("signal 15") == signalsBefore;
    }));
    m_rig->clock().advance(90s - 1ns);
    QVERIFY(!m_rig->log().contains("[Tidewick]"));
    QVERIFY(m_rig->status().hasProcess);
    m_rig->clock().advance(1ns);
    QVERIFY(m_rig->waitUntil([&] { return !m_rig->status().hasProcess; }));
    QCOMPARE(m_rig->status().phase, Phase::Stopped);
    QCOMPARE(m_rig->status().detail, QStringLiteral("Enough"));
    QCOMPARE(m_rig->noted("signal 15"), signalsBefore);
    static const QRegularExpression note(
        QStringLiteral("\n\\[Tidewick\\] \\d{4}-\\d\\d-\\d\\d \\d\\d:\\d\\d:\\d\\d \\+0000 "
                       "stop timed out after 90 s; sending SIGKILL\n"));
    QVERIFY(note.match(QString::fromUtf8(m_rig->log())).hasMatch());
}

void TestNodeControllerStopping::machineSleepCountsTowardsTheKill()
{
    m_rig->setScenario("speed=50 state=full stop=hang");
    QVERIFY(m_rig->startUntil(Phase::Full));
    m_rig->node().stop();
    m_rig->clock().sleep(90s);
    QVERIFY(m_rig->waitUntil([&] { return !m_rig->status().hasProcess; }));
    QVERIFY(m_rig->log().contains("sending SIGKILL"));
}

void TestNodeControllerStopping::exitStatusOfARequestedStopIsIgnored()
{
    m_rig->setNode(TIDEWICK_CHILD_PATH, {"wait"}); // is terminated by the signal
    m_rig->node().start();
    m_rig->node().stop(QStringLiteral("Enough"));
    QVERIFY(m_rig->waitUntil([&] { return !m_rig->status().hasProcess; }));
    QCOMPARE(m_rig->status().phase, Phase::Stopped);
    QVERIFY(!m_rig->status().errorText);
}

void TestNodeControllerStopping::waitersResumeInOrder()
{
    QVERIFY(m_rig->startUntil(Phase::Full));
    QStringList order;
    for (const char *name : {"a", "b", "c"})
        noteWhenStopped(m_rig->node(), QString::fromLatin1(name), order);
    QVERIFY(order.isEmpty());
    QVERIFY(m_rig->waitForPhase(Phase::Stopped));
    QCOMPARE(order, (QStringList{QStringLiteral("a"), QStringLiteral("b"), QStringLiteral("c")}));
    QCOMPARE(m_rig->status().detail, QStringLiteral("a"));
    // Each waiter resumes only once: the end of another run does not concern it.
    QVERIFY(m_rig->startUntil(Phase::Full));
    m_rig->node().stop();
    QVERIFY(m_rig->waitForPhase(Phase::Stopped));
    QCOMPARE(order.size(), 3);
}

void TestNodeControllerStopping::waitingWithoutANode()
{
    QStringList order;
    noteWhenStopped(m_rig->node(), QStringLiteral("a"), order);
    QCOMPARE(order.size(), 1);
    QCOMPARE(m_rig->status().phase, Phase::Stopped);
}

void TestNodeControllerStopping::waitersOfADestroyedController()
{
    QVERIFY(m_rig->startUntil(Phase::Full));
    QStringList order;
    noteWhenStopped(m_rig->node(), QStringLiteral("a"), order);
    m_rig->destroyNode();
    QCOMPARE(order.size(), 1);
}

namespace {

QCoro::Task<> destroyWhenStopped(NodeRig &rig, bool &done)
{
    co_await rig.node().stopAndWait(QStringLiteral("last"));
    rig.destroyNode();
    done = true;
}

} // namespace

void TestNodeControllerStopping::waiterMayDestroyTheController()
{
    QVERIFY(m_rig->startUntil(Phase::Full));
    QStringList order;
    bool done = false;
    destroyWhenStopped(*m_rig, done);
    noteWhenStopped(m_rig->node(), QStringLiteral("after"), order);
    m_rig->node().setTerminateWhenStopped();
    QVERIFY(m_rig->waitUntil([&] { return done; }));
    QCOMPARE(order.size(), 1);
}

void TestNodeControllerStopping::terminatesWhenStopped()
{
    QVERIFY(m_rig->startUntil(Phase::Full));
    QStringList order;
    connect(&m_rig->node(), &NodeController::readyToTerminate, this,
            [&] { order += QStringLiteral("ready"); });
    m_rig->node().setTerminateWhenStopped();
    noteWhenStopped(m_rig->node(), QStringLiteral("Quitting"), order);
    QVERIFY(m_rig->waitForPhase(Phase::Stopped));
    QCOMPARE(order, (QStringList{QStringLiteral("Quitting"), QStringLiteral("ready")}));
}

void TestNodeControllerStopping::plainStopDoesNotTerminate()
{
    QSignalSpy ready(&m_rig->node(), &NodeController::readyToTerminate);
    QVERIFY(m_rig->startUntil(Phase::Full));
    m_rig->node().stop();
    QVERIFY(m_rig->waitForPhase(Phase::Stopped));
    QCOMPARE(ready.count(), 0);
}

TIDEWICK_LOOPBACK_TEST_MAIN(TestNodeControllerStopping)
#include "tst_nodecontroller_stopping.moc"
