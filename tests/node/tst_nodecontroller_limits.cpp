// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "node/NodeController.h"
#include "node/Settings.h"
#include "support/ScriptedNode.h"
#include "support/Surroundings.h"

#include <optional>

using namespace tidewick;
using namespace std::chrono_literals;

/// Tests that the node is stopped when it reaches one of its limits.
class TestNodeControllerLimits : public QObject
{
    Q_OBJECT

private slots:
    void init() { m_rig = std::make_unique<NodeRig>(); }
    void cleanup() { m_rig.reset(); }

    void hardCap();
    void afterFull();
    void onlyTheFirstFullCounts();
    void earlierLimitApplies();
    void noAfterFullLimitBeforeFull();
    void timeLeft();
    void machineSleepDoesNotCountTowardsLimits();
    void runningDiskGuard_data();
    void runningDiskGuard();

private:
    std::unique_ptr<NodeRig> m_rig;
};

void TestNodeControllerLimits::hardCap()
{
    m_rig->defaults().setInteger(Settings::autoStopHardCapMinutes.key, 1);
    m_rig->setScenario("speed=50 state=syncing");
    const auto begin = m_rig->clock().suspendingNow();
    QVERIFY(m_rig->startUntil(Phase::Syncing));
    QVERIFY(m_rig->waitForPhase(Phase::Stopping));
    QCOMPARE(m_rig->status().detail, QStringLiteral("Stopped automatically after its time limit"));
    const auto after = m_rig->clock().suspendingNow() - begin;
    QVERIFY(after >= 60s && after <= 70s); // checked every ten seconds
    QVERIFY(m_rig->waitForPhase(Phase::Stopped));
    QCOMPARE(m_rig->status().detail, QStringLiteral("Stopped automatically after its time limit"));
}

void TestNodeControllerLimits::afterFull()
{
    m_rig->defaults().setInteger(Settings::autoStopAfterFullMinutes.key, 2);
    QVERIFY(m_rig->startUntil(Phase::Full));
    const auto full = m_rig->clock().suspendingNow();
    QVERIFY(m_rig->waitForPhase(Phase::Stopping));
    const auto after = m_rig->clock().suspendingNow() - full;
    QVERIFY(after >= 120s && after <= 130s);
}

void TestNodeControllerLimits::onlyTheFirstFullCounts()
{
    m_rig->defaults().setInteger(Settings::autoStopAfterFullMinutes.key, 2);
    ScriptedNode script(*m_rig);
    QVERIFY(m_rig->startUntil(Phase::Full));
    const auto full = m_rig->clock().suspendingNow();
    QVERIFY(m_rig->runUntil([&] { return m_rig->clock().suspendingNow() - full > 60s; }));
    script.setInfo(R"({"server_state":"syncing"})");
    QVERIFY(m_rig->waitForPhase(Phase::Syncing));
    script.setInfo(R"({"server_state":"full"})");
    QVERIFY(m_rig->waitForPhase(Phase::Full));
    QVERIFY(m_rig->waitForPhase(Phase::Stopping));
    const auto after = m_rig->clock().suspendingNow() - full;
    QVERIFY(after >= 120s && after <= 130s);
}

void TestNodeControllerLimits::earlierLimitApplies()
{
    m_rig->defaults().setInteger(Settings::autoStopAfterFullMinutes.key, 60);
    m_rig->defaults().setInteger(Settings::autoStopHardCapMinutes.key, 1);
    const auto begin = m_rig->clock().suspendingNow();
    QVERIFY(m_rig->startUntil(Phase::Full));
    QVERIFY(m_rig->waitForPhase(Phase::Stopping));
    const auto after = m_rig->clock().suspendingNow() - begin;
    QVERIFY(after >= 60s && after <= 70s);
}

void TestNodeControllerLimits::noAfterFullLimitBeforeFull()
{
    m_rig->defaults().setInteger(Settings::autoStopAfterFullMinutes.key, 1);
    m_rig->setScenario("speed=50 state=syncing");
    QVERIFY(m_rig->startUntil(Phase::Syncing));
    const auto begin = m_rig->clock().suspendingNow();
    QVERIFY(m_rig->runUntil([&] { return m_rig->clock().suspendingNow() - begin > 200s; }));
    QCOMPARE(m_rig->status().phase, Phase::Syncing);
    QVERIFY(!m_rig->status().timeLeft);
}

void TestNodeControllerLimits::timeLeft()
{
    m_rig->defaults().setInteger(Settings::autoStopHardCapMinutes.key, 240);
    QVERIFY(m_rig->startUntil(Phase::Full));
    QCOMPARE(m_rig->status().timeLeft, QStringLiteral("4h 0m"));
    QVERIFY(m_rig->runUntil([&] { return m_rig->status().timeLeft != QStringLiteral("4h 0m"); }));
    QCOMPARE(m_rig->status().timeLeft, QStringLiteral("3h 59m"));
    m_rig->clock().advance(1h);
    QVERIFY(m_rig->runUntil([&] { return m_rig->status().timeLeft != QStringLiteral("3h 59m"); }));
    QCOMPARE(m_rig->status().timeLeft, QStringLiteral("2h 59m"));
    m_rig->node().stop();
    QVERIFY(!m_rig->status().timeLeft);
}

void TestNodeControllerLimits::machineSleepDoesNotCountTowardsLimits()
{
    m_rig->defaults().setInteger(Settings::autoStopHardCapMinutes.key, 60);
    QVERIFY(m_rig->startUntil(Phase::Full));
    const qsizetype before = m_rig->noted("get_counts");
    m_rig->clock().sleep(10h);
    QVERIFY(m_rig->runUntil([&] { return m_rig->noted("get_counts") >= before + 2; }));
    QCOMPARE(m_rig->status().phase, Phase::Full);
    QCOMPARE(m_rig->status().timeLeft, QStringLiteral("59m"));
}

void TestNodeControllerLimits::runningDiskGuard_data()
{
    QTest::addColumn<std::optional<double>>("free");
    QTest::addColumn<qint64>("guard");
    QTest::addColumn<QString>("shown");  // the free space, if the node keeps running
    QTest::addColumn<QString>("reason"); // empty if the node keeps running
    using Free = std::optional<double>;
    const auto row = [](const char *name, Free free, qint64 guard, const char *shown,
                        const char *reason) {
        QTest::newRow(name) << free << guard << QString::fromUtf8(shown)
                            << QString::fromUtf8(reason);
    };
    row("equal", 10, 10, "10.0 GB free", "");
    row("unknown", {}, 10, "–", "");
    row("no guard", 0, 0, "0.0 GB free", "");
    row("below", 9.96, 10, "", "Stopped: only 10.0 GB free");
    row("far below", 0.25, 10, "", "Stopped: only 0.2 GB free");
}

void TestNodeControllerLimits::runningDiskGuard()
{
    QFETCH(std::optional<double>, free);
    QFETCH(qint64, guard);
    QFETCH(QString, shown);
    QFETCH(QString, reason);
    m_rig->defaults().setInteger(Settings::diskGuardFreeGB.key, guard);
    QVERIFY(m_rig->startUntil(Phase::Full));
    m_rig->setFreeGB(free);
    const qsizetype before = m_rig->noted("get_counts");
    if (reason.isEmpty()) {
        QVERIFY(m_rig->runUntil([&] { return m_rig->noted("get_counts") >= before + 2; }));
        QCOMPARE(m_rig->status().phase, Phase::Full);
        QCOMPARE(m_rig->status().freeSpace, shown);
    } else {
        QVERIFY(m_rig->waitForPhase(Phase::Stopped));
        QCOMPARE(m_rig->status().detail, reason);
        QVERIFY(!m_rig->status().errorText);
    }
}

TIDEWICK_LOOPBACK_TEST_MAIN(TestNodeControllerLimits)
#include "tst_nodecontroller_limits.moc"
