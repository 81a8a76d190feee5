// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "node/NodeController.h"
#include "platform/NodePorts.h"
#include "support/RpcCall.h"
#include "support/ScriptedNode.h"
#include "support/Surroundings.h"

#include <csignal>
#include <optional>

using namespace tidewick;
using namespace std::chrono_literals;

/// Tests when the controller polls a running node, and which answers count.
class TestNodeControllerPolling : public QObject
{
    Q_OBJECT

private slots:
    void init() { m_rig = std::make_unique<NodeRig>(); }
    void cleanup() { m_rig.reset(); }

    void pollsOnSchedule();
    void missedPollsAreSkipped();
    void badAnswers_data();
    void badAnswers();
    void silenceKeepsKnownValues();
    void missingCountsChangeNothing_data();
    void missingCountsChangeNothing();
    void lateAnswersAreDiscarded();
    void answersAfterAStopAreDiscarded();
    void unchangedAnswersPublishNothing();
    void destroyedWhilePolling();

private:
    std::unique_ptr<NodeRig> m_rig;
};

void TestNodeControllerPolling::pollsOnSchedule()
{
    ScriptedNode script(*m_rig);
    m_rig->node().start();
    QByteArrayList expected{"server_info", "get_counts"}; // at once
    QVERIFY(m_rig->waitUntil([&] { return m_rig->status().freeSpace != NodeStatus::unknown(); }));
    QCOMPARE(script.methods(), expected);
    for (int cycle = 1; cycle <= 11; ++cycle) {
        // A poll that had begun would have used up its alarm, even before its request becomes
        // visible.
        m_rig->clock().advance(2s - 1ms);
        QCOMPARE(m_rig->clock().alarms(), 1U);
        QCOMPARE(script.methods(), expected);
        m_rig->clock().advance(1ms);
        expected += "server_info";
        if (cycle % 5 == 0)
            expected += "get_counts";
        QVERIFY(m_rig->waitUntil([&] {
            return script.methods().size() == expected.size() && m_rig->clock().alarms() == 1;
        }));
        QCOMPARE(script.methods(), expected);
    }
}

void TestNodeControllerPolling::missedPollsAreSkipped()
{
    ScriptedNode script(*m_rig);
    m_rig->node().start();
    QVERIFY(m_rig->waitUntil([&] { return m_rig->clock().alarms() == 1; }));
    const qsizetype before = script.methods().size();
    m_rig->clock().sleep(8h); // system sleep; one poll is due on waking
    QVERIFY(m_rig->waitUntil([&] { return m_rig->clock().alarms() == 1; }));
    QCOMPARE(script.methods().size(), before + 1);
}

void TestNodeControllerPolling::badAnswers_data()
{
    QTest::addColumn<QByteArray>("kind");
    for (const char *kind : {"garbage", "array", "array-result", "string-result", "no-result",
                             "400", "403", "503", "401", "redirect", "half", "deep", "reset",
                             "error", "huge", "huge-chunked", "huge-header"})
        QTest::newRow(kind) << QByteArray(kind);
}

void TestNodeControllerPolling::badAnswers()
{
    QFETCH(QByteArray, kind);
    m_rig->setScenario("speed=50 redirect-port=16006 rpc=" + kind);
    m_rig->node().start();
    QVERIFY(m_rig->runUntil([&] { return m_rig->noted("server_info") >= 3; }));
    const NodeStatus &status = m_rig->status();
    QCOMPARE(status.phase, Phase::Starting);
    QCOMPARE(status.detail, QStringLiteral("Opening the store"));
    QVERIFY(!status.hasServerInfo);
    QVERIFY(status.hasProcess);
    QCOMPARE(status.uptime, NodeStatus::unknown());
    // The node is alive nevertheless, and observed as far as the host allows.
    QVERIFY(status.memory != NodeStatus::unknown());
    QCOMPARE(status.freeSpace, QStringLiteral("100.0 GB free"));
}

void TestNodeControllerPolling::silenceKeepsKnownValues()
{
    ScriptedNode script(*m_rig);
    script.setInfo(R"({"server_state":"connected","peers":5,"uptime":3600})");
    script.setCounts(R"({"mossgrid_maintenance":{"phase":"starting"}})");
    m_rig->node().start();
    QVERIFY(m_rig->waitForPhase(Phase::Connecting));
    QVERIFY(m_rig->runUntil([&] { return m_rig->status().storage.has_value(); }));
    const NodeStatus known = m_rig->status();
    script.hold();
    QVERIFY(m_rig->runUntil([&] { return script.held() >= 1; }));
    QVERIFY(m_rig->waitUntil([&] { return m_rig->clock().alarms() == 1; })); // timed out
    NodeStatus now = m_rig->status();
    now.memory = known.memory; // still reported by the host
    QVERIFY(now == known);
}

void TestNodeControllerPolling::missingCountsChangeNothing_data()
{
    QTest::addColumn<bool>("silent");
    QTest::newRow("silent") << true;
    QTest::newRow("refused") << false;
}

void TestNodeControllerPolling::missingCountsChangeNothing()
{
    QFETCH(bool, silent);
    ScriptedNode script(*m_rig);
    script.setInfo(R"({"server_state":"acquiring","peers":5})");
    script.setCounts(R"({"stream_bootstrap":{"enabled":true,"phase":"acquiring","ledgers_behind":7},
                         "mossgrid_maintenance":{"phase":"retiring"},
                         "process":{"footprint":"5000","peak_footprint":"6000"}})");
    m_rig->node().start();
    QVERIFY(m_rig->waitForPhase(Phase::Bootstrapping));
    NodeStatus expected = m_rig->status();
    QCOMPARE(expected.detail, QStringLiteral("acquiring · 7 ledgers behind"));
    QCOMPARE(expected.storage, QStringLiteral("Storage: removing the old copy"));
    if (silent)
        script.hold("get_counts");
    else
        script.setCounts(std::nullopt);

    const qsizetype before = script.methods().count("get_counts");
    for (int poll = 1; poll <= 2; ++poll) {
        script.setInfo(R"({"server_state":"acquiring","peers":)" + QByteArray::number(5 + poll)
                       + '}'); // while server_info is answered
        QVERIFY(
            m_rig->runUntil([&] { return script.methods().count("get_counts") == before + poll; }));
        QVERIFY(m_rig->waitUntil([&] { return m_rig->clock().alarms() == 1; }));
        expected.peers = 5 + poll;
        QVERIFY(m_rig->status() == expected);
    }
}

void TestNodeControllerPolling::lateAnswersAreDiscarded()
{
    ScriptedNode script(*m_rig);
    QList<std::optional<qint64>> published;
    connect(&m_rig->node(), &NodeController::statusChanged, this,
            [&] { published += m_rig->status().peers; });
    script.hold();
    m_rig->node().start();
    QVERIFY(m_rig->waitUntil([&] { return script.held() == 1; }));
    // The first run ends while its request is pending, and a second run begins.
    ::kill(m_rig->lastChild(), SIGKILL);
    QVERIFY(m_rig->waitUntil([&] { return !m_rig->status().hasProcess; }));
    m_rig->node().start();
    QVERIFY(m_rig->waitUntil([&] { return script.held() == 2; }));
    QCOMPARE(m_rig->status().phase, Phase::Starting);

    script.setInfo(R"({"server_state":"full","peers":99})");
    script.releaseOne();
    script.setInfo(R"({"server_state":"connected","peers":1})");
    script.release();
    QByteArrayList expected{"server_info", "server_info", "get_counts"};
    QVERIFY(m_rig->waitUntil([&] { return m_rig->clock().alarms() == 1; }));
    QCOMPARE(script.methods(), expected);
    QCOMPARE(m_rig->node().lastServerInfo()->value(u"peers").toInt(), 1);
    // The late answer does not affect the following requests either.
    expected += "server_info";
    m_rig->clock().advance(2s);
    QVERIFY(m_rig->waitUntil([&] { return m_rig->clock().alarms() == 1; }));
    QCOMPARE(script.methods(), expected);
    QVERIFY(published.contains(std::optional<qint64>(1)));
    QVERIFY(!published.contains(std::optional<qint64>(99)));
}

void TestNodeControllerPolling::answersAfterAStopAreDiscarded()
{
    ScriptedNode script(*m_rig);
    script.hold();
    m_rig->setNode(TIDEWICK_CHILD_PATH, {"ignore-terminate"});
    m_rig->node().start();
    // By the time the signal is sent, the child has to be ignoring it.
    QVERIFY(m_rig->waitUntil([&] { return script.held() == 1 && m_rig->log().contains("ready"); }));
    m_rig->node().stop();
    const NodeStatus before = m_rig->status();
    QCOMPARE(before.phase, Phase::Stopping);
    script.release();
    QVERIFY(m_rig->waitUntil([&] { return m_rig->clock().alarms() == 2; })); // poll, kill
    QVERIFY(m_rig->status() == before);
}

void TestNodeControllerPolling::unchangedAnswersPublishNothing()
{
    ScriptedNode script(*m_rig);
    script.setCounts(R"({"process":{"footprint":"5000","peak_footprint":"6000"}})");
    m_rig->node().start();
    QVERIFY(m_rig->waitUntil([&] { return m_rig->clock().alarms() == 1; }));
    QSignalSpy changes(&m_rig->node(), &NodeController::statusChanged);
    const qsizetype before = script.methods().size();
    QVERIFY(m_rig->runUntil([&] { return script.methods().size() >= before + 8; }));
    QCOMPARE(changes.count(), 0);
    script.setInfo(R"({"server_state":"full","peers":1})");
    QVERIFY(m_rig->runUntil([&] { return changes.count() > 0; }));
    QCOMPARE(changes.count(), 1);
}

void TestNodeControllerPolling::destroyedWhilePolling()
{
    ScriptedNode script(*m_rig);
    script.hold();
    m_rig->node().start();
    QVERIFY(m_rig->waitUntil([&] { return script.held() == 1; }));
    m_rig->destroyNode();
    script.release();
    // Any request of the controller would have arrived before this one.
    QVERIFY(rpcResult(NodePorts::rpc, QStringLiteral("stop")));
    QCOMPARE(script.methods(), (QByteArrayList{"server_info", "stop"}));
    QCOMPARE(m_rig->clock().alarms(), 0U);
}

TIDEWICK_LOOPBACK_TEST_MAIN(TestNodeControllerPolling)
#include "tst_nodecontroller_polling.moc"
