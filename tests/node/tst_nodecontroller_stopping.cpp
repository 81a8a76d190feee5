// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "node/NodeController.h"
#include "node/Settings.h"
#include "support/NodeRig.h"
#include "support/Surroundings.h"

#include <QRegularExpression>

#include <csignal>
#include <optional>

using namespace tidewick;
using namespace std::chrono_literals;
namespace fs = std::filesystem;

namespace {

QCoro::Task<> noteWhenStopped(NodeController &node, QString name, QStringList &order)
{
    co_await node.stopAndWait(name);
    order += name;
}

/// A user who is asked and answers when the test says so.
class User
{
public:
    explicit User(NodeController &node)
    {
        node.setConfirm([this](Confirmation question) { return ask(std::move(question)); });
    }

    int questions() const { return m_questions; }
    const Confirmation &last() const { return m_last; }
    void answer(bool yes) { m_answer->resolve(yes); }

private:
    QCoro::Task<bool> ask(Confirmation question)
    {
        ++m_questions;
        m_last = std::move(question);
        m_answer = std::make_shared<OneShot<bool>>();
        const auto answer = m_answer;
        co_return co_await *answer;
    }

    int m_questions = 0;
    Confirmation m_last;
    std::shared_ptr<OneShot<bool>> m_answer;
};

} // namespace

/// Stopping the node: asked for, by a limit, by force; and clearing its storage.
class TestNodeControllerStopping : public QObject
{
    Q_OBJECT

private slots:
    void init() { m_rig = std::make_unique<NodeRig>(); }
    void cleanup() { m_rig.reset(); }

    void stopsOverRpcOnceAnswered();
    void stopsBySignalBeforeAnyAnswer();
    void stopsBySignalWhenRpcIsSilent();
    void stopAnsweredWithAnErrorIsAnswered();
    void stopWithoutAReason();
    void stopWithoutANode();
    void secondStopChangesNothing();
    void killsAfterNinetySeconds_data();
    void killsAfterNinetySeconds();
    void machineSleepCountsTowardsTheKill();
    void statusOfARequestedEndDoesNotMatter();
    void waitersResumeInOrder();
    void waitingWithoutANode();
    void waitersOfADestroyedController();
    void waiterMayDestroyTheController();
    void terminatesWhenStopped();
    void plainStopDoesNotTerminate();

    void hardCap();
    void afterFull();
    void earlierLimitGoverns();
    void notFullNoAfterFullLimit();
    void timeLeft();
    void machineSleepDoesNotCountTowardsLimits();
    void runningDiskGuard_data();
    void runningDiskGuard();

    void clearAsks();
    void clearCancelled();
    void clearWithoutANode();
    void clearWithARunningNode();
    void clearWhileStopping();
    void clearThatFails();
    void clearInTheErrorPhase();
    void oneQuestionAtATime();
    void answerAfterTheEnd();
    void withoutAConfirmationNothingIsCleared();

private:
    void startAndWait(Phase phase)
    {
        m_rig->node().start();
        QVERIFY(m_rig->waitForPhase(phase));
    }
    void fillStore() const
    {
        fs::create_directories(m_rig->data() / "db");
        writeFile(m_rig->data() / "db" / "file", QByteArray(409'600, 'x')); // whole blocks
    }

    std::unique_ptr<NodeRig> m_rig;
};

void TestNodeControllerStopping::stopsOverRpcOnceAnswered()
{
    startAndWait(Phase::Full);
    m_rig->node().stop(QStringLiteral("Enough"));
    QCOMPARE(m_rig->status().phase, Phase::Stopping);
    QCOMPARE(m_rig->status().detail, QStringLiteral("Enough"));
    QVERIFY(m_rig->status().hasProcess);
    QVERIFY(m_rig->waitForPhase(Phase::Stopped));
    QCOMPARE(m_rig->status().detail, QStringLiteral("Enough"));
    QVERIFY(!m_rig->status().hasProcess && !m_rig->status().errorText);
    QCOMPARE(m_rig->noted("RPCHandler:NFO stop"), 1);
    QCOMPARE(m_rig->noted("signal"), 0);
    QCOMPARE(m_rig->clock().alarms(), 0U); // neither polled nor killed any more
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
    startAndWait(Phase::Full);
    m_rig->node().stop();
    QVERIFY(m_rig->waitUntil([&] { return !m_rig->status().hasProcess; }));
    QCOMPARE(m_rig->status().phase, Phase::Stopped);
    QCOMPARE(m_rig->noted("RPCHandler:NFO stop"), 1);
    QCOMPARE(m_rig->noted("signal 15"), 1);
}

void TestNodeControllerStopping::stopAnsweredWithAnErrorIsAnswered()
{
    m_rig->setScenario("speed=50 state=full rpc.stop=error stop=hang");
    startAndWait(Phase::Full);
    m_rig->node().stop();
    QVERIFY(m_rig->waitUntil([&] { return m_rig->noted("RPCHandler:NFO stop") == 1; }));
    QVERIFY(m_rig->runUntil([&] { return !m_rig->status().hasProcess; }));
    QCOMPARE(m_rig->noted("signal 15"), 0);
    QVERIFY(m_rig->log().contains("sending SIGKILL"));
}

void TestNodeControllerStopping::stopWithoutAReason()
{
    startAndWait(Phase::Full);
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
    m_rig->clock().advance(10s); // ninety after the first
    QVERIFY(m_rig->waitUntil([&] { return !m_rig->status().hasProcess; }));
    QCOMPARE(m_rig->status().detail, QStringLiteral("first"));
    QCOMPARE(m_rig->noted("signal 15"), 1);
}

void TestNodeControllerStopping::killsAfterNinetySeconds_data()
{
    QTest::addColumn<QByteArray>("scenario");
    QTest::newRow("answers the stop and goes on") << QByteArray("stop=hang");
    QTest::newRow("ignores both") << QByteArray("rpc.stop=silent sigterm=ignore");
}

void TestNodeControllerStopping::killsAfterNinetySeconds()
{
    QFETCH(QByteArray, scenario);
    m_rig->setScenario("speed=50 state=full " + scenario);
    startAndWait(Phase::Full);
    m_rig->node().stop(QStringLiteral("Enough"));
    QVERIFY(m_rig->waitUntil([&] { return m_rig->noted("RPCHandler:NFO stop") == 1; }));
    m_rig->clock().advance(90s - 1ns);
    QVERIFY(!m_rig->log().contains("[Tidewick]"));
    QVERIFY(m_rig->status().hasProcess);
    m_rig->clock().advance(1ns);
    QVERIFY(m_rig->waitUntil([&] { return !m_rig->status().hasProcess; }));
    QCOMPARE(m_rig->status().phase, Phase::Stopped);
    QCOMPARE(m_rig->status().detail, QStringLiteral("Enough"));
    static const QRegularExpression note(
        QStringLiteral("\n\\[Tidewick\\] \\d{4}-\\d\\d-\\d\\d \\d\\d:\\d\\d:\\d\\d \\+0000 "
                       "stop timed out after 90 s; sending SIGKILL\n"));
    QVERIFY(note.match(QString::fromUtf8(m_rig->log())).hasMatch());
}

void TestNodeControllerStopping::machineSleepCountsTowardsTheKill()
{
    m_rig->setScenario("speed=50 state=full stop=hang");
    startAndWait(Phase::Full);
    m_rig->node().stop();
    m_rig->clock().sleep(90s);
    QVERIFY(m_rig->waitUntil([&] { return !m_rig->status().hasProcess; }));
    QVERIFY(m_rig->log().contains("sending SIGKILL"));
}

void TestNodeControllerStopping::statusOfARequestedEndDoesNotMatter()
{
    m_rig->setNode(TIDEWICK_CHILD_PATH, {"wait"}); // dies of the signal
    m_rig->node().start();
    m_rig->node().stop(QStringLiteral("Enough"));
    QVERIFY(m_rig->waitUntil([&] { return !m_rig->status().hasProcess; }));
    QCOMPARE(m_rig->status().phase, Phase::Stopped);
    QVERIFY(!m_rig->status().errorText);
}

void TestNodeControllerStopping::waitersResumeInOrder()
{
    startAndWait(Phase::Full);
    QStringList order;
    for (const char *name : {"a", "b", "c"})
        noteWhenStopped(m_rig->node(), QString::fromLatin1(name), order);
    QVERIFY(order.isEmpty());
    QVERIFY(m_rig->waitForPhase(Phase::Stopped));
    QCOMPARE(order, (QStringList{QStringLiteral("a"), QStringLiteral("b"), QStringLiteral("c")}));
    QCOMPARE(m_rig->status().detail, QStringLiteral("a"));
    // Each once: another run's end does not concern them.
    startAndWait(Phase::Full);
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
    startAndWait(Phase::Full);
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
    startAndWait(Phase::Full);
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
    startAndWait(Phase::Full);
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
    startAndWait(Phase::Full);
    m_rig->node().stop();
    QVERIFY(m_rig->waitForPhase(Phase::Stopped));
    QCOMPARE(ready.count(), 0);
}

void TestNodeControllerStopping::hardCap()
{
    m_rig->defaults().setInteger(Settings::autoStopHardCapMinutes.key, 1);
    m_rig->setScenario("speed=50 state=syncing");
    const auto begin = m_rig->clock().suspendingNow();
    startAndWait(Phase::Syncing);
    QVERIFY(m_rig->waitForPhase(Phase::Stopping));
    QCOMPARE(m_rig->status().detail, QStringLiteral("Stopped automatically after its time limit"));
    const auto after = m_rig->clock().suspendingNow() - begin;
    QVERIFY(after >= 60s);
    QVERIFY(after <= 75s); // a check every ten seconds, and answers take a while
    QVERIFY(m_rig->waitForPhase(Phase::Stopped));
    QCOMPARE(m_rig->status().detail, QStringLiteral("Stopped automatically after its time limit"));
}

void TestNodeControllerStopping::afterFull()
{
    m_rig->defaults().setInteger(Settings::autoStopAfterFullMinutes.key, 2);
    startAndWait(Phase::Full);
    const auto full = m_rig->clock().suspendingNow();
    QVERIFY(m_rig->waitForPhase(Phase::Stopping));
    const auto after = m_rig->clock().suspendingNow() - full;
    QVERIFY(after >= 118s);
    QVERIFY(after <= 135s);
}

void TestNodeControllerStopping::earlierLimitGoverns()
{
    m_rig->defaults().setInteger(Settings::autoStopAfterFullMinutes.key, 60);
    m_rig->defaults().setInteger(Settings::autoStopHardCapMinutes.key, 1);
    const auto begin = m_rig->clock().suspendingNow();
    startAndWait(Phase::Full);
    QVERIFY(m_rig->waitForPhase(Phase::Stopping));
    QVERIFY(m_rig->clock().suspendingNow() - begin <= 75s);
}

void TestNodeControllerStopping::notFullNoAfterFullLimit()
{
    m_rig->defaults().setInteger(Settings::autoStopAfterFullMinutes.key, 1);
    m_rig->setScenario("speed=50 state=syncing");
    startAndWait(Phase::Syncing);
    const auto begin = m_rig->clock().suspendingNow();
    QVERIFY(m_rig->runUntil([&] { return m_rig->clock().suspendingNow() - begin > 200s; }));
    QCOMPARE(m_rig->status().phase, Phase::Syncing);
    QVERIFY(!m_rig->status().timeLeft);
}

void TestNodeControllerStopping::timeLeft()
{
    m_rig->defaults().setInteger(Settings::autoStopHardCapMinutes.key, 240);
    startAndWait(Phase::Full);
    QVERIFY(m_rig->runUntil([&] { return m_rig->status().timeLeft.has_value(); }));
    QCOMPARE(*m_rig->status().timeLeft, QStringLiteral("3h 59m"));
    m_rig->clock().advance(1h);
    QVERIFY(m_rig->runUntil([&] { return m_rig->status().timeLeft == QStringLiteral("2h 59m"); }));
    m_rig->node().stop();
    QVERIFY(!m_rig->status().timeLeft);
}

void TestNodeControllerStopping::machineSleepDoesNotCountTowardsLimits()
{
    m_rig->defaults().setInteger(Settings::autoStopHardCapMinutes.key, 60);
    startAndWait(Phase::Full);
    const qsizetype before = m_rig->noted("get_counts");
    m_rig->clock().sleep(10h);
    QVERIFY(m_rig->runUntil([&] { return m_rig->noted("get_counts") >= before + 2; }));
    QCOMPARE(m_rig->status().phase, Phase::Full);
    QCOMPARE(*m_rig->status().timeLeft, QStringLiteral("59m"));
}

void TestNodeControllerStopping::runningDiskGuard_data()
{
    QTest::addColumn<std::optional<double>>("free");
    QTest::addColumn<QString>("reason"); // empty: goes on
    using Free = std::optional<double>;
    QTest::newRow("equal") << Free(10) << QString();
    QTest::newRow("not told") << Free() << QString();
    QTest::newRow("below") << Free(9.96) << QStringLiteral("Stopped: only 10.0 GB free");
    QTest::newRow("far below") << Free(0.25) << QStringLiteral("Stopped: only 0.2 GB free");
}

void TestNodeControllerStopping::runningDiskGuard()
{
    QFETCH(std::optional<double>, free);
    QFETCH(QString, reason);
    startAndWait(Phase::Full);
    m_rig->setFreeGB(free);
    const qsizetype before = m_rig->noted("get_counts");
    if (reason.isEmpty()) {
        QVERIFY(m_rig->runUntil([&] { return m_rig->noted("get_counts") >= before + 2; }));
        QCOMPARE(m_rig->status().phase, Phase::Full);
        QCOMPARE(m_rig->status().freeSpace,
                 free ? QStringLiteral("10.0 GB free") : NodeStatus::unknown());
    } else {
        QVERIFY(m_rig->waitForPhase(Phase::Stopped));
        QCOMPARE(m_rig->status().detail, reason);
        QVERIFY(!m_rig->status().errorText);
    }
}

void TestNodeControllerStopping::clearAsks()
{
    User user(m_rig->node());
    fillStore();
    m_rig->node().clearStorage();
    QCOMPARE(user.questions(), 1);
    QCOMPARE(user.last().title, QStringLiteral("Clear Storage?"));
    QCOMPARE(user.last().text,
             QStringLiteral("This deletes 410 KB at\n%1\n\n"
                            "The next Start downloads the ledger from the network again.")
                 .arg(QString::fromStdString((m_rig->data() / "db").string())));
    QCOMPARE(user.last().acceptLabel, QStringLiteral("Delete"));
    QCOMPARE(user.last().rejectLabel, QStringLiteral("Cancel"));
    user.answer(false);
}

void TestNodeControllerStopping::clearCancelled()
{
    User user(m_rig->node());
    fillStore();
    const NodeStatus before = m_rig->status();
    m_rig->node().clearStorage();
    user.answer(false);
    QVERIFY(fs::exists(m_rig->data() / "db" / "file"));
    QVERIFY(m_rig->status() == before);
    m_rig->node().clearStorage();
    QCOMPARE(user.questions(), 2);
    user.answer(false);
}

void TestNodeControllerStopping::clearWithoutANode()
{
    User user(m_rig->node());
    fillStore();
    m_rig->node().clearStorage();
    user.answer(true);
    QVERIFY(!fs::exists(m_rig->data() / "db"));
    QCOMPARE(m_rig->status().phase, Phase::Stopped);
    QCOMPARE(m_rig->status().detail, QStringLiteral("Storage cleared"));
    QCOMPARE(m_rig->status().storeSize, QStringLiteral("Zero KB"));
}

void TestNodeControllerStopping::clearWithARunningNode()
{
    User user(m_rig->node());
    startAndWait(Phase::Full);
    QVERIFY(m_rig->runUntil([&] { return fs::exists(m_rig->data() / "db"); }));
    m_rig->node().clearStorage();
    QCOMPARE(m_rig->status().phase, Phase::Full);
    user.answer(true);
    QCOMPARE(m_rig->status().phase, Phase::Stopping);
    QCOMPARE(m_rig->status().detail, QStringLiteral("Stopped to clear storage"));
    QVERIFY(fs::exists(m_rig->data() / "db")); // not while the node has it open
    QVERIFY(m_rig->waitForPhase(Phase::Stopped));
    QVERIFY(!fs::exists(m_rig->data() / "db"));
    QCOMPARE(m_rig->status().detail, QStringLiteral("Storage cleared"));
    // Once: the next stop keeps the store.
    startAndWait(Phase::Full);
    m_rig->node().stop();
    QVERIFY(m_rig->waitForPhase(Phase::Stopped));
    QVERIFY(fs::exists(m_rig->data() / "db"));
}

void TestNodeControllerStopping::clearWhileStopping()
{
    User user(m_rig->node());
    startAndWait(Phase::Full);
    m_rig->node().stop(QStringLiteral("Enough"));
    m_rig->node().clearStorage();
    user.answer(true);
    QCOMPARE(m_rig->status().detail, QStringLiteral("Enough"));
    QVERIFY(m_rig->waitForPhase(Phase::Stopped));
    QVERIFY(!fs::exists(m_rig->data() / "db"));
    QCOMPARE(m_rig->status().detail, QStringLiteral("Storage cleared"));
}

void TestNodeControllerStopping::clearThatFails()
{
    User user(m_rig->node());
    writeFile(m_rig->data(), "not a folder");
    m_rig->node().clearStorage();
    user.answer(true);
    QCOMPARE(m_rig->status().phase, Phase::Error);
    QCOMPARE(m_rig->status().detail,
             QStringLiteral("Could not clear storage: %1: Not a directory")
                 .arg(QString::fromStdString((m_rig->data() / "db").string())));
}

void TestNodeControllerStopping::clearInTheErrorPhase()
{
    User user(m_rig->node());
    m_rig->setScenario("exit=1");
    startAndWait(Phase::Error);
    fillStore();
    const QString detail = m_rig->status().detail;
    m_rig->node().clearStorage();
    user.answer(true);
    QVERIFY(!fs::exists(m_rig->data() / "db"));
    QCOMPARE(m_rig->status().phase, Phase::Error);
    QCOMPARE(m_rig->status().detail, detail);
}

void TestNodeControllerStopping::oneQuestionAtATime()
{
    User user(m_rig->node());
    m_rig->node().clearStorage();
    m_rig->node().clearStorage();
    QCOMPARE(user.questions(), 1);
    user.answer(false);
}

void TestNodeControllerStopping::answerAfterTheEnd()
{
    User user(m_rig->node());
    fillStore();
    m_rig->node().clearStorage();
    m_rig->destroyNode();
    user.answer(true);
    QVERIFY(fs::exists(m_rig->data() / "db" / "file"));
}

void TestNodeControllerStopping::withoutAConfirmationNothingIsCleared()
{
    fillStore();
    m_rig->node().clearStorage();
    QVERIFY(fs::exists(m_rig->data() / "db" / "file"));
}

TIDEWICK_LOOPBACK_TEST_MAIN(TestNodeControllerStopping)
#include "tst_nodecontroller_stopping.moc"
