// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "node/NodeController.h"
#include "support/ScriptedNode.h"
#include "support/Surroundings.h"

#include <QRegularExpression>

#include <csignal>

using namespace tidewick;

/// Tests the figures that the controller derives from a running node's answers.
class TestNodeControllerFigures : public QObject
{
    Q_OBJECT

private slots:
    void init() { m_rig = std::make_unique<NodeRig>(); }
    void cleanup() { m_rig.reset(); }

    void walksThroughThePhases();
    void pinnedPhases_data();
    void pinnedPhases();
    void figuresOfARunningNode();
    void figuresAreClearedWithTheProcess();
    void plainNode();
    void recordedAnswers();
    void wrongTypes();
    void memoryFromTheHost();
    void memoryInASandbox();
    void reportedMemoryIsKept();
    void storageLine();
    void storageIsRememberedAcrossRuns();

private:
    std::unique_ptr<NodeRig> m_rig;
};

void TestNodeControllerFigures::walksThroughThePhases()
{
    ScriptedNode script(*m_rig);
    script.setCounts(R"({"stream_bootstrap":{"enabled":true,"phase":"catching_up",
                         "completed_passes":"3","ledgers_behind":700}})");
    QList<Phase> phases;
    connect(&m_rig->node(), &NodeController::statusChanged, this, [&] {
        if (phases.isEmpty() || phases.constLast() != m_rig->status().phase)
            phases += m_rig->status().phase;
    });
    const auto step = [&](const char *state, const char *detail) {
        script.setInfo(R"({"peers":4,"server_state":")" + QByteArray(state) + "\"}");
        return m_rig->runUntil([&] { return m_rig->status().detail == QString::fromUtf8(detail); });
    };
    script.setInfo(R"({"server_state":"catching_up"})");
    m_rig->node().start();
    QCOMPARE(m_rig->status().detail, QStringLiteral("Opening the store"));
    QVERIFY(step("catching_up", "catching up · 3 passes · 700 ledgers behind"));
    QVERIFY(step("connected", "4 peers (connected)"));
    QVERIFY(step("syncing", "Catching up (syncing)"));
    QVERIFY(step("tracking", "Catching up (tracking)"));
    QVERIFY(step("full", "Following mainnet"));
    QCOMPARE(phases, (QList<Phase>{Phase::Starting, Phase::Bootstrapping, Phase::Connecting,
                                   Phase::Syncing, Phase::Full}));
}

void TestNodeControllerFigures::pinnedPhases_data()
{
    QTest::addColumn<QByteArray>("scenario");
    QTest::addColumn<Phase>("phase");
    QTest::addColumn<QString>("detail");
    const auto row = [](const char *scenario, Phase phase, const char *detail) {
        QTest::newRow(scenario) << QByteArray(scenario) << phase << QString::fromUtf8(detail);
    };
    row("state=proposing", Phase::Full, "Following mainnet");
    row("state=waiting_quorum", Phase::Bootstrapping, "waiting quorum · 1200 ledgers behind");
    row("state=tracking", Phase::Syncing, "Catching up (tracking)");
    row("state=connected peers=7", Phase::Connecting, "7 peers (connected)");
    row("state=disconnected peers=0", Phase::Connecting, "0 peers (disconnected)");
    row("state=connected amendment-blocked=yes", Phase::Connecting, "Amendment blocked");
    row("state=acquiring peers=3 counts=plain", Phase::Connecting, "3 peers (acquiring)");
    row("state=acquiring peers=3 bootstrap=no", Phase::Connecting, "3 peers (acquiring)");
}

void TestNodeControllerFigures::pinnedPhases()
{
    QFETCH(QByteArray, scenario);
    QFETCH(Phase, phase);
    QFETCH(QString, detail);
    m_rig->setScenario("speed=50 " + scenario);
    m_rig->node().start();
    // Waits for the end of a poll that includes the counts.
    QVERIFY(m_rig->runUntil(
        [&] { return m_rig->noted("get_counts") > 0 && m_rig->clock().alarms() == 1; }));
    QCOMPARE(m_rig->status().phase, phase);
    QCOMPARE(m_rig->status().detail, detail);
}

void TestNodeControllerFigures::figuresOfARunningNode()
{
    m_rig->node().start();
    QVERIFY(m_rig->runUntil([&] { return m_rig->status().storage && m_rig->status().ledgerSeq; }));
    const NodeStatus &status = m_rig->status();
    QVERIFY(status.ledger.startsWith(QStringLiteral("#%1 (").arg(*status.ledgerSeq)));
    QVERIFY(status.ledger.endsWith(u"s ago)"));
    QVERIFY(status.peers && *status.peers > 0);
    QVERIFY(status.uptime.endsWith(u'm'));
    static const QRegularExpression memory(QStringLiteral("^[0-9.]+ MB · peak [0-9.]+ MB$"));
    QVERIFY2(memory.match(status.memory).hasMatch(), qPrintable(status.memory));
    QVERIFY(status.storage->startsWith(u"Storage"));
    QCOMPARE(status.freeSpace, QStringLiteral("100.0 GB free"));
    QVERIFY(m_rig->runUntil([&] { return status.storeSize != QStringLiteral("Zero KB"); }));
}

void TestNodeControllerFigures::figuresAreClearedWithTheProcess()
{
    m_rig->node().start();
    QVERIFY(m_rig->waitForPhase(Phase::Full));
    QVERIFY(m_rig->runUntil([&] { return m_rig->status().storage.has_value(); }));
    m_rig->node().stop();
    QVERIFY(m_rig->waitForPhase(Phase::Stopped));
    const NodeStatus &status = m_rig->status();
    for (const QString &figure : {status.ledger, status.uptime, status.memory})
        QCOMPARE(figure, NodeStatus::unknown());
    QVERIFY(!status.peers && !status.ledgerSeq && !status.timeLeft);
    QVERIFY(status.storage); // is kept, like the disk figures
    QVERIFY(status.hasServerInfo);
}

void TestNodeControllerFigures::plainNode()
{
    m_rig->setScenario("speed=50 state=full counts=plain");
    m_rig->node().start();
    QVERIFY(m_rig->runUntil([&] { return m_rig->noted("get_counts") >= 2; }));
    QCOMPARE(m_rig->status().phase, Phase::Full);
    QVERIFY(!m_rig->status().storage);
    QVERIFY(m_rig->status().memory != NodeStatus::unknown()); // reported by the host
}

/// Uses the recorded answers of a stock node.
void TestNodeControllerFigures::recordedAnswers()
{
    m_rig->bundle().setStore("NuDB");
    m_rig->setScenario("rpc=recorded");
    m_rig->node().start();
    const NodeStatus &status = m_rig->status();
    QVERIFY(m_rig->runUntil([&] { return status.ledger == QStringLiteral("#2 (0s ago)"); }));
    QVERIFY(m_rig->runUntil([&] { return m_rig->noted("get_counts") >= 3; }));
    QCOMPARE(status.phase, Phase::Full);
    QCOMPARE(status.detail, QStringLiteral("Following mainnet"));
    QCOMPARE(status.ledger, QStringLiteral("#12 (0s ago)"));
    QCOMPARE(status.ledgerSeq, std::optional<qint64>(12));
    QCOMPARE(status.peers, std::optional<qint64>(0));
    QCOMPARE(status.uptime, QStringLiteral("0m"));
    QVERIFY(status.memory.contains(QStringLiteral(" · peak ")));
    QVERIFY(!status.storage && !status.errorText);
    m_rig->node().stop();
    QVERIFY(m_rig->waitForPhase(Phase::Stopped));
    QCOMPARE(m_rig->noted("RPCHandler:NFO stop"), 1);
}

void TestNodeControllerFigures::wrongTypes()
{
    m_rig->setScenario("speed=50 rpc=wrong-types");
    m_rig->node().start();
    QVERIFY(m_rig->runUntil([&] { return m_rig->noted("get_counts") >= 2; }));
    const NodeStatus &status = m_rig->status();
    QCOMPARE(status.uptime, NodeStatus::unknown());
    QCOMPARE(status.ledger, NodeStatus::unknown());
    QVERIFY(!status.peers && !status.ledgerSeq);
}

void TestNodeControllerFigures::memoryFromTheHost()
{
    m_rig->setScenario("speed=50 state=full process=no");
    m_rig->node().start();
    QVERIFY(m_rig->runUntil([&] { return m_rig->status().memory != NodeStatus::unknown(); }));
    QVERIFY(m_rig->status().memory.contains(QStringLiteral(" · peak ")));
}

void TestNodeControllerFigures::memoryInASandbox()
{
    m_rig->setSandboxed();
    m_rig->setScenario("speed=50 state=full process=no");
    m_rig->node().start();
    QVERIFY(m_rig->runUntil([&] { return m_rig->noted("get_counts") >= 2; }));
    QCOMPARE(m_rig->status().memory, NodeStatus::unknown());
}

void TestNodeControllerFigures::reportedMemoryIsKept()
{
    ScriptedNode script(*m_rig);
    script.setCounts(R"({"process":{"footprint":"5000","peak_footprint":"6000"}})");
    m_rig->node().start();
    QVERIFY(m_rig->waitUntil([&] { return m_rig->status().memory != NodeStatus::unknown(); }));
    QCOMPARE(m_rig->status().memory, QStringLiteral("5 KB · peak 6 KB"));
    script.setCounts("{}");
    QVERIFY(m_rig->runUntil([&] { return script.methods().count("get_counts") >= 3; }));
    QCOMPARE(m_rig->status().memory, QStringLiteral("5 KB · peak 6 KB"));
}

void TestNodeControllerFigures::storageLine()
{
    ScriptedNode script(*m_rig);
    script.setCounts(R"({"mossgrid_maintenance":{"phase":"retiring"}})");
    m_rig->node().start();
    QVERIFY(m_rig->waitUntil([&] { return m_rig->status().storage.has_value(); }));
    QCOMPARE(*m_rig->status().storage, QStringLiteral("Storage: removing the old copy"));
    script.setCounts(R"({"mossgrid_maintenance":"retiring"})");
    QVERIFY(m_rig->runUntil([&] { return !m_rig->status().storage; }));
}

void TestNodeControllerFigures::storageIsRememberedAcrossRuns()
{
    ScriptedNode script(*m_rig);
    script.setCounts(R"({"mossgrid_maintenance":{"phase":"building","operation":"major",
                         "phase_seconds":900}})");
    m_rig->node().start();
    QVERIFY(m_rig->waitUntil([&] { return m_rig->status().storage.has_value(); }));
    m_rig->node().stop();
    ::kill(m_rig->lastChild(), SIGKILL);
    QVERIFY(m_rig->waitUntil([&] { return !m_rig->status().hasProcess; }));
    // While it was not being observed, the node has finished the rebuild that it had begun.
    script.setCounts(R"({"mossgrid_maintenance":{"last_outcome":"success"}})");
    m_rig->node().start();
    QVERIFY(m_rig->waitUntil(
        [&] { return m_rig->status().storage == QStringLiteral("Storage: up to date"); }));
    QCOMPARE(m_rig->defaults().real(QStringLiteral("lastBuildSeconds.major")), 900.0);
}

TIDEWICK_LOOPBACK_TEST_MAIN(TestNodeControllerFigures)
#include "tst_nodecontroller_figures.moc"
