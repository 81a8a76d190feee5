// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "node/NodeController.h"
#include "node/NodePorts.h"
#include "support/NodeRig.h"
#include "support/RawServer.h"
#include "support/Surroundings.h"

#include <QPointer>
#include <QRegularExpression>
#include <QTcpSocket>

#include <csignal>
#include <optional>

using namespace tidewick;
using namespace std::chrono_literals;

namespace {

/// A node whose answers a test writes itself: a process that only waits, and a server in this one.
class ScriptedNode
{
public:
    explicit ScriptedNode(NodeRig &rig)
        : m_server([this](QTcpSocket *connection) { answer(connection); }, NodePorts::rpc)
    {
        rig.setNode(TIDEWICK_CHILD_PATH, {"wait"});
        rig.setPortInUse([](quint16) { return false; });
    }

    void setInfo(const QByteArray &info) { m_info = info; }
    void setCounts(const QByteArray &counts) { m_counts = counts; }
    /// Leaves questions open until released.
    void hold() { m_holding = true; }
    void release()
    {
        m_holding = false;
        for (const auto &connection : std::exchange(m_held, {})) {
            if (connection)
                connection->write(reply(m_server.requests().constLast()));
        }
    }
    qsizetype held() const { return m_held.size(); }

    /// The methods asked for so far.
    QByteArrayList methods() const
    {
        QByteArrayList methods;
        for (const QByteArray &request : m_server.requests())
            methods += methodOf(request);
        return methods;
    }

private:
    static QByteArray methodOf(const QByteArray &request)
    {
        for (const char *method : {"server_info", "get_counts", "stop"}) {
            if (request.contains('"' + QByteArray(method) + '"'))
                return method;
        }
        return request;
    }

    QByteArray reply(const QByteArray &request) const
    {
        const QByteArray method = methodOf(request);
        if (method == "get_counts")
            return RawServer::http("{\"result\":" + m_counts + '}');
        if (method == "server_info")
            return RawServer::http("{\"result\":{\"info\":" + m_info + "}}");
        return RawServer::http("{\"result\":{}}");
    }

    void answer(QTcpSocket *connection)
    {
        if (m_holding)
            m_held += connection;
        else
            connection->write(reply(m_server.requests().constLast()));
    }

    QByteArray m_info = R"({"server_state":"full"})";
    QByteArray m_counts = "{}";
    bool m_holding = false;
    QList<QPointer<QTcpSocket>> m_held;
    RawServer m_server;
};

} // namespace

/// What the controller makes of a running node's answers.
class TestNodeControllerPolling : public QObject
{
    Q_OBJECT

private slots:
    void init() { m_rig = std::make_unique<NodeRig>(); }
    void cleanup() { m_rig.reset(); }

    void walksThroughThePhases();
    void pinnedPhases_data();
    void pinnedPhases();
    void asksAtTheRightTimes();
    void missedTimesAreNotMadeUp();
    void badAnswers_data();
    void badAnswers();
    void figuresOfARunningNode();
    void figuresGoWithTheProcess();
    void plainNode();
    void wrongTypes();
    void memoryFromTheHost();
    void memoryInASandbox();
    void memoryReportedOnceIsNotAskedForAgain();
    void storageLine();
    void storageIsRememberedAcrossRuns();
    void silenceKeepsWhatIsKnown();
    void lateAnswersAreForgotten();
    void answersAfterAStopAreForgotten();
    void unchangedAnswersPublishNothing();
    void destroyedWhileAsking();

private:
    std::unique_ptr<NodeRig> m_rig;
};

void TestNodeControllerPolling::walksThroughThePhases()
{
    m_rig->setScenario("speed=8");
    QList<Phase> phases;
    QStringList details;
    connect(&m_rig->node(), &NodeController::statusChanged, this, [&] {
        const NodeStatus &status = m_rig->status();
        if (phases.isEmpty() || phases.constLast() != status.phase)
            phases += status.phase;
        details += status.detail;
    });
    m_rig->node().start();
    QVERIFY(m_rig->waitForPhase(Phase::Full));
    // Until the counts tell of bootstrapping, its states count as connecting.
    phases.removeAll(Phase::Connecting);
    QCOMPARE(phases,
             (QList<Phase>{Phase::Starting, Phase::Bootstrapping, Phase::Syncing, Phase::Full}));
    QVERIFY(details.contains(QStringLiteral("Opening the store")));
    QVERIFY(details.contains(QStringLiteral("Catching up (syncing)")));
    QVERIFY(details.contains(QStringLiteral("Catching up (tracking)")));
    QVERIFY(details.contains(QStringLiteral("Following mainnet")));
    QVERIFY(!details.filter(QStringLiteral(" ledgers behind")).isEmpty());
}

void TestNodeControllerPolling::pinnedPhases_data()
{
    QTest::addColumn<QByteArray>("scenario");
    QTest::addColumn<Phase>("phase");
    QTest::addColumn<QString>("detail");
    const auto row = [](const char *scenario, Phase phase, const char *detail) {
        QTest::newRow(scenario) << QByteArray(scenario) << phase << QString::fromUtf8(detail);
    };
    row("state=proposing", Phase::Full, "Following mainnet");
    row("state=tracking", Phase::Syncing, "Catching up (tracking)");
    row("state=connected peers=7", Phase::Connecting, "7 peers (connected)");
    row("state=disconnected peers=0", Phase::Connecting, "0 peers (disconnected)");
    row("state=connected amendment-blocked=yes", Phase::Connecting, "Amendment blocked");
    row("state=acquiring peers=3 counts=plain", Phase::Connecting, "3 peers (acquiring)");
    row("state=acquiring peers=3 bootstrap=no", Phase::Connecting, "3 peers (acquiring)");
}

void TestNodeControllerPolling::pinnedPhases()
{
    QFETCH(QByteArray, scenario);
    QFETCH(Phase, phase);
    QFETCH(QString, detail);
    m_rig->setScenario("speed=50 " + scenario);
    m_rig->node().start();
    QVERIFY(m_rig->runUntil([&] { return m_rig->status().hasServerInfo; }));
    QCOMPARE(m_rig->status().phase, phase);
    QCOMPARE(m_rig->status().detail, detail);
}

void TestNodeControllerPolling::asksAtTheRightTimes()
{
    ScriptedNode script(*m_rig);
    m_rig->node().start();
    QByteArrayList expected{"server_info", "get_counts"}; // at once
    QVERIFY(m_rig->waitUntil([&] { return m_rig->status().freeSpace != NodeStatus::unknown(); }));
    QCOMPARE(script.methods(), expected);
    for (int cycle = 1; cycle <= 11; ++cycle) {
        m_rig->clock().advance(2s - 1ms);
        QCoreApplication::processEvents();
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

void TestNodeControllerPolling::missedTimesAreNotMadeUp()
{
    ScriptedNode script(*m_rig);
    m_rig->node().start();
    QVERIFY(m_rig->waitUntil([&] { return m_rig->clock().alarms() == 1; }));
    const qsizetype before = script.methods().size();
    m_rig->clock().sleep(8h); // the machine; on waking one poll is due
    QVERIFY(m_rig->waitUntil([&] { return m_rig->clock().alarms() == 1; }));
    QCOMPARE(script.methods().size(), before + 1);
}

void TestNodeControllerPolling::badAnswers_data()
{
    QTest::addColumn<QByteArray>("kind");
    for (const char *kind :
         {"garbage", "array", "array-result", "string-result", "no-result", "400", "403", "503",
          "401", "redirect", "half", "deep", "reset", "error", "huge", "huge-chunked"})
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
    // It is alive all the same, and watched as far as the host can tell.
    QVERIFY(status.memory != NodeStatus::unknown());
    QCOMPARE(status.freeSpace, QStringLiteral("100.0 GB free"));
}

void TestNodeControllerPolling::figuresOfARunningNode()
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

void TestNodeControllerPolling::figuresGoWithTheProcess()
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
    QVERIFY(status.storage); // keeps its value, as the disk figures do
    QVERIFY(status.hasServerInfo);
}

void TestNodeControllerPolling::plainNode()
{
    m_rig->setScenario("speed=50 state=full counts=plain");
    m_rig->node().start();
    QVERIFY(m_rig->runUntil([&] { return m_rig->noted("get_counts") >= 2; }));
    QCOMPARE(m_rig->status().phase, Phase::Full);
    QVERIFY(!m_rig->status().storage);
    QVERIFY(m_rig->status().memory != NodeStatus::unknown()); // the host tells it
}

void TestNodeControllerPolling::wrongTypes()
{
    m_rig->setScenario("speed=50 rpc=wrong-types");
    m_rig->node().start();
    QVERIFY(m_rig->runUntil([&] { return m_rig->noted("get_counts") >= 2; }));
    const NodeStatus &status = m_rig->status();
    QCOMPARE(status.uptime, NodeStatus::unknown());
    QCOMPARE(status.ledger, NodeStatus::unknown());
    QVERIFY(!status.peers && !status.ledgerSeq);
}

void TestNodeControllerPolling::memoryFromTheHost()
{
    m_rig->setScenario("speed=50 state=full process=no");
    m_rig->node().start();
    QVERIFY(m_rig->runUntil([&] { return m_rig->status().memory != NodeStatus::unknown(); }));
    QVERIFY(m_rig->status().memory.contains(QStringLiteral(" · peak ")));
}

void TestNodeControllerPolling::memoryInASandbox()
{
    m_rig->setSandboxed();
    m_rig->setScenario("speed=50 state=full process=no");
    m_rig->node().start();
    QVERIFY(m_rig->runUntil([&] { return m_rig->noted("get_counts") >= 2; }));
    QCOMPARE(m_rig->status().memory, NodeStatus::unknown());
}

void TestNodeControllerPolling::memoryReportedOnceIsNotAskedForAgain()
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

void TestNodeControllerPolling::storageLine()
{
    ScriptedNode script(*m_rig);
    script.setCounts(R"({"mossgrid_maintenance":{"phase":"retiring"}})");
    m_rig->node().start();
    QVERIFY(m_rig->waitUntil([&] { return m_rig->status().storage.has_value(); }));
    QCOMPARE(*m_rig->status().storage, QStringLiteral("Storage: removing the old copy"));
    script.setCounts(R"({"mossgrid_maintenance":"retiring"})");
    QVERIFY(m_rig->runUntil([&] { return !m_rig->status().storage; }));
}

void TestNodeControllerPolling::storageIsRememberedAcrossRuns()
{
    ScriptedNode script(*m_rig);
    script.setCounts(R"({"mossgrid_maintenance":{"phase":"building","operation":"major",
                         "phase_seconds":900}})");
    m_rig->node().start();
    QVERIFY(m_rig->waitUntil([&] { return m_rig->status().storage.has_value(); }));
    m_rig->node().stop();
    ::kill(m_rig->lastChild(), SIGKILL);
    QVERIFY(m_rig->waitUntil([&] { return !m_rig->status().hasProcess; }));
    // The node finishes what it had begun while it was not watched.
    script.setCounts(R"({"mossgrid_maintenance":{"last_outcome":"success"}})");
    m_rig->node().start();
    QVERIFY(m_rig->waitUntil(
        [&] { return m_rig->status().storage == QStringLiteral("Storage: up to date"); }));
    QCOMPARE(m_rig->defaults().real(QStringLiteral("lastBuildSeconds.major")), 900.0);
}

void TestNodeControllerPolling::silenceKeepsWhatIsKnown()
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
    QVERIFY(m_rig->waitUntil([&] { return m_rig->clock().alarms() == 1; })); // given up
    NodeStatus now = m_rig->status();
    now.memory = known.memory; // the host goes on telling that
    QVERIFY(now == known);
}

void TestNodeControllerPolling::lateAnswersAreForgotten()
{
    ScriptedNode script(*m_rig);
    script.setInfo(R"({"server_state":"full","peers":99})");
    script.hold();
    m_rig->node().start();
    QVERIFY(m_rig->waitUntil([&] { return script.held() == 1; }));
    // The first run ends with its question open, and a second begins.
    ::kill(m_rig->lastChild(), SIGKILL);
    QVERIFY(m_rig->waitUntil([&] { return !m_rig->status().hasProcess; }));
    m_rig->node().start();
    QVERIFY(m_rig->waitUntil([&] { return script.held() == 2; }));
    const NodeStatus before = m_rig->status();
    QCOMPARE(before.phase, Phase::Starting);
    script.setInfo(R"({"server_state":"connected","peers":1})");
    script.release();
    QVERIFY(m_rig->waitUntil([&] { return m_rig->status().hasServerInfo; }));
    QCOMPARE(m_rig->status().peers, std::optional<qint64>(1));
    QCOMPARE(m_rig->node().lastServerInfo()->value(u"peers").toInt(), 1);
}

void TestNodeControllerPolling::answersAfterAStopAreForgotten()
{
    ScriptedNode script(*m_rig);
    script.hold();
    m_rig->setNode(TIDEWICK_CHILD_PATH, {"ignore-terminate"});
    m_rig->node().start();
    QVERIFY(m_rig->waitUntil([&] { return script.held() == 1; }));
    m_rig->node().stop();
    const NodeStatus before = m_rig->status();
    QCOMPARE(before.phase, Phase::Stopping);
    script.release();
    QVERIFY(m_rig->waitUntil([&] { return m_rig->clock().alarms() == 2; })); // poll and kill
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

void TestNodeControllerPolling::destroyedWhileAsking()
{
    ScriptedNode script(*m_rig);
    script.hold();
    m_rig->node().start();
    QVERIFY(m_rig->waitUntil([&] { return script.held() == 1; }));
    m_rig->destroyNode();
    script.release();
    QCoreApplication::processEvents();
}

TIDEWICK_LOOPBACK_TEST_MAIN(TestNodeControllerPolling)
#include "tst_nodecontroller_polling.moc"
