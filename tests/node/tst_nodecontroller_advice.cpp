// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "node/NodeController.h"
#include "platform/NodePorts.h"
#include "platform/files/Files.h"
#include "support/NodeRig.h"
#include "support/ScriptedNode.h"
#include "support/Surroundings.h"

#include <QTcpServer>

#include <optional>

using namespace tidewick;
using namespace std::chrono_literals;
using Cause = Advice::Cause;
namespace fs = std::filesystem;

/// Tests when the controller gives advice and when it withdraws it.
class TestNodeControllerAdvice : public QObject
{
    Q_OBJECT

private slots:
    void init() { m_rig = std::make_unique<NodeRig>(); }
    void cleanup();

    void silence();
    void silenceFromTheStart();
    void noPeers();
    void slowness_data();
    void slowness();
    void slowAccordingToTheNode();
    void missingLists();
    void sitesAreRequestedOnlyWhenNeeded();
    void otherNode();
    void stopWithdrawsAdvice();
    void damagedStore();
    void otherStore();
    void missingNode_data();
    void missingNode();
    void noAdviceForARefusedStart();

private:
    std::optional<Cause> cause() const;
    bool comesTo(std::optional<Cause> wanted)
    {
        return m_rig->runUntil([=, this] { return cause() == wanted; });
    }
    /// Waits until this many more answers have been processed.
    bool takesAnswers(const ScriptedNode &node, int count);

    std::unique_ptr<NodeRig> m_rig;
};

void TestNodeControllerAdvice::cleanup()
{
    m_rig.reset();
    fs::remove_all(fs::path(qgetenv("XDG_CONFIG_HOME").toStdString()) / "Tidewick");
}

std::optional<Cause> TestNodeControllerAdvice::cause() const
{
    const std::optional<Advice> &advice = m_rig->status().advice;
    return advice ? std::optional(advice->cause) : std::nullopt;
}

bool TestNodeControllerAdvice::takesAnswers(const ScriptedNode &node, int count)
{
    const auto wanted = node.methods().count("server_info") + count + 1;
    return m_rig->runUntil([&] { return node.methods().count("server_info") >= wanted; });
}

void TestNodeControllerAdvice::silence()
{
    ScriptedNode node(*m_rig);
    m_rig->node().start();
    QVERIFY(m_rig->waitForPhase(Phase::Full));
    QVERIFY(!cause());
    node.hold();
    m_rig->clock().advance(31s);
    QVERIFY(comesTo(Cause::NoAnswer));
    QVERIFY(m_rig->status().advice->text.contains(QLatin1String("figures are that old")));
    QCOMPARE(m_rig->status().phase, Phase::Full);
    node.release();
    QVERIFY(comesTo(std::nullopt));
}

void TestNodeControllerAdvice::silenceFromTheStart()
{
    m_rig->setScenario("listen=no");
    m_rig->node().start();
    QVERIFY(comesTo(Cause::NoAnswer));
    QCOMPARE(m_rig->status().phase, Phase::Starting);
    QVERIFY(m_rig->status().advice->text.contains(QLatin1String("since its start")));
}

void TestNodeControllerAdvice::noPeers()
{
    ScriptedNode node(*m_rig);
    node.setInfo(R"({"server_state":"disconnected","peers":0})");
    m_rig->node().start();
    QVERIFY(m_rig->waitForPhase(Phase::Connecting));
    m_rig->clock().advance(4min);
    QVERIFY(takesAnswers(node, 2));
    QVERIFY(!cause());
    m_rig->clock().advance(1min);
    QVERIFY(comesTo(Cause::NoPeers));
    // One peer is enough; without peers the time starts over.
    node.setInfo(R"({"server_state":"connected","peers":1})");
    QVERIFY(comesTo(std::nullopt));
    node.setInfo(R"({"server_state":"disconnected"})");
    QVERIFY(takesAnswers(node, 2));
    QVERIFY(!cause());
}

void TestNodeControllerAdvice::slowness_data()
{
    QTest::addColumn<QByteArray>("slow");
    QTest::addColumn<QByteArray>("fast");
    QTest::newRow("disk") << QByteArray(R"({"server_state":"full","io_latency_ms":100})")
                          << QByteArray(R"({"server_state":"full","io_latency_ms":99})");
    QTest::newRow("load") << QByteArray(R"({"server_state":"full","load_factor":4})")
                          << QByteArray(R"({"server_state":"full","load_factor":3.9})");
    QTest::newRow("sync") << QByteArray(R"({"server_state":"tracking","peers":3})")
                          << QByteArray(R"({"server_state":"full","peers":3})");
}

void TestNodeControllerAdvice::slowness()
{
    QFETCH(QByteArray, slow);
    QFETCH(QByteArray, fast);
    ScriptedNode node(*m_rig);
    node.setInfo(slow);
    m_rig->node().start();
    QVERIFY(takesAnswers(node, 1));
    m_rig->clock().advance(59min);
    QVERIFY(takesAnswers(node, 2));
    QVERIFY(!cause());
    m_rig->clock().advance(1min);
    QVERIFY(comesTo(Cause::TooSlow));
    node.setInfo(fast);
    QVERIFY(comesTo(std::nullopt));
    // The node has to be slow for an hour without interruption.
    node.setInfo(slow);
    QVERIFY(takesAnswers(node, 2));
    QVERIFY(!cause());
}

void TestNodeControllerAdvice::slowAccordingToTheNode()
{
    ScriptedNode node(*m_rig);
    node.setInfo(
        R"({"server_state":"connected","peers":3,"server_state_duration_us":"3600000000"})");
    m_rig->node().start();
    QVERIFY(comesTo(Cause::TooSlow));
    node.setInfo(R"({"server_state":"full","peers":3,"server_state_duration_us":"3600000000"})");
    QVERIFY(comesTo(std::nullopt));
}

void TestNodeControllerAdvice::missingLists()
{
    m_rig->setScenario("speed=50 lists=none");
    m_rig->node().start();
    QVERIFY(comesTo(Cause::NoValidatorList));
    QCOMPARE(m_rig->status().phase, Phase::Connecting);
    QVERIFY(m_rig->runUntil([this] {
        return m_rig->status().advice->text
               == QLatin1String("No valid list of validators. unl.xrplf.org cannot be reached; "
                                "check your network or validators.txt.");
    }));
}

void TestNodeControllerAdvice::sitesAreRequestedOnlyWhenNeeded()
{
    ScriptedNode node(*m_rig);
    m_rig->node().start();
    QVERIFY(takesAnswers(node, 7));
    QVERIFY(!node.methods().contains("validator_list_sites"));
    node.setInfo(R"({"server_state":"connected","peers":3,"uptime":60,
                     "validation_quorum":4294967295})");
    QVERIFY(comesTo(Cause::NoValidatorList));
    QVERIFY(m_rig->runUntil([&] { return node.methods().contains("validator_list_sites"); }));
}

void TestNodeControllerAdvice::otherNode()
{
    QTcpServer other;
    QVERIFY(other.listen(QHostAddress::LocalHost, NodePorts::peers));
    m_rig->node().start();
    QVERIFY(comesTo(Cause::OtherNode));
    other.close();
    QVERIFY(comesTo(std::nullopt));
}

void TestNodeControllerAdvice::stopWithdrawsAdvice()
{
    m_rig->setScenario("speed=50 state=connected amendment-blocked=yes");
    m_rig->node().start();
    QVERIFY(comesTo(Cause::AmendmentBlocked));
    m_rig->node().stop();
    QCOMPARE(m_rig->status().phase, Phase::Stopping);
    QVERIFY(!cause());
    QVERIFY(m_rig->waitForPhase(Phase::Stopped));
    QVERIFY(!cause());
}

void TestNodeControllerAdvice::damagedStore()
{
    QVERIFY(m_rig->startUntil(Phase::Full));
    m_rig->node().stop();
    QVERIFY(m_rig->waitForPhase(Phase::Stopped));
    m_rig->setScenario("store=damaged");
    m_rig->node().start();
    QVERIFY(m_rig->waitForPhase(Phase::Error));
    QCOMPARE(cause(), Cause::StoreDamaged);
    // Following the advice helps.
    m_rig->node().setConfirm([](Confirmation) -> QCoro::Task<bool> { co_return true; });
    m_rig->node().clearStorage();
    m_rig->node().start();
    QVERIFY(!cause());
    QVERIFY(m_rig->runUntil([this] { return m_rig->status().hasServerInfo; }));
    QVERIFY(!cause());
}

void TestNodeControllerAdvice::otherStore()
{
    m_rig->setScenario("store=stock");
    m_rig->node().start();
    QVERIFY(m_rig->waitForPhase(Phase::Error));
    QCOMPARE(cause(), Cause::OtherStore);
}

void TestNodeControllerAdvice::missingNode_data()
{
    QTest::addColumn<bool>("relative");
    QTest::newRow("absolute link") << false;
    QTest::newRow("relative link, as in a package") << true;
}

void TestNodeControllerAdvice::missingNode()
{
    QFETCH(bool, relative);
    const fs::path node = m_rig->bundle().node();
    const fs::path target = m_rig->bundle().path() / "no-such-xrpld";
    fs::remove(node);
    fs::create_symlink(relative ? target.lexically_relative(node.parent_path()) : target, node);
    m_rig->node().start();
    QCOMPARE(m_rig->status().phase, Phase::Error);
    QCOMPARE(cause(), Cause::NodeMissing);
    const QString place = QStringLiteral("There is no node at %1. ").arg(Files::display(target));
    QVERIFY2(m_rig->status().advice->text.startsWith(place),
             qPrintable(m_rig->status().advice->text));
}

void TestNodeControllerAdvice::noAdviceForARefusedStart()
{
    m_rig->setScenario("store=stock");
    m_rig->node().start();
    QVERIFY(m_rig->waitForPhase(Phase::Error));
    m_rig->setPortInUse([](quint16 port) { return port == NodePorts::rpc; });
    m_rig->node().start();
    QCOMPARE(m_rig->status().phase, Phase::Error);
    QVERIFY(!cause());
}

TIDEWICK_LOOPBACK_TEST_MAIN(TestNodeControllerAdvice)
#include "tst_nodecontroller_advice.moc"
