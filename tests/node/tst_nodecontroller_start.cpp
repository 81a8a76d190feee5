// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "node/NodeController.h"
#include "node/Settings.h"
#include "platform/NodePorts.h"
#include "support/NodeRig.h"
#include "support/Processes.h"
#include "support/RpcCall.h"
#include "support/Surroundings.h"

#include <QRegularExpression>
#include <QScopeGuard>
#include <QTcpServer>

#include <csignal>
#include <list>

#include <sys/stat.h>
#include <sys/wait.h>

using namespace tidewick;
namespace fs = std::filesystem;

/// Tests starting the node, and its unrequested exits.
class TestNodeControllerStart : public QObject
{
    Q_OBJECT

private slots:
    void init() { m_rig = std::make_unique<NodeRig>(); }
    void cleanup() { m_rig.reset(); }

    void beforeTheFirstStart();
    void startsTheNode();
    void passesArgumentsAndEnvironment();
    void outputIsAppended();
    void secondStartIsIgnored();
    void blockedStart();
    void portTaken_data();
    void portTaken();
    void diskGuard_data();
    void diskGuard();
    void settingsAreReadAtEachStart();
    void cannotStart_data();
    void cannotStart();
    void rotatesTheLogs();
    void exitsUnexpectedly_data();
    void exitsUnexpectedly();
    void tailOfThisRunOnly();
    void tailOfALargeLog();
    void grandchildKeepsTheLog();
    void startAfterAFailure();
    void destroyedWhileTheNodeRuns();

private:
    std::unique_ptr<NodeRig> m_rig;
};

void TestNodeControllerStart::beforeTheFirstStart()
{
    const NodeStatus fresh;
    QVERIFY(m_rig->status() == fresh);
    QCOMPARE(fresh.phase, Phase::Stopped);
    for (const QString &figure :
         {fresh.ledger, fresh.uptime, fresh.memory, fresh.storeSize, fresh.freeSpace})
        QCOMPARE(figure, QStringLiteral("–"));
    QVERIFY(!fresh.hasServerInfo && !fresh.hasProcess && !fresh.errorText && !fresh.peers
            && !fresh.ledgerSeq && !fresh.timeLeft && !fresh.storage);
    QVERIFY(!fs::exists(m_rig->data())); // nothing is written before the first start
}

void TestNodeControllerStart::startsTheNode()
{
    QSignalSpy changes(&m_rig->node(), &NodeController::statusChanged);
    m_rig->node().start();
    QVERIFY(changes.count() > 0);
    QCOMPARE(m_rig->status().phase, Phase::Starting);
    QCOMPARE(m_rig->status().detail, QStringLiteral("Opening the store"));
    QVERIFY(m_rig->status().hasProcess);
    QVERIFY(m_rig->waitForPhase(Phase::Full));
    QVERIFY(m_rig->status().hasServerInfo);
    QVERIFY(m_rig->node().lastServerInfo());
}

void TestNodeControllerStart::passesArgumentsAndEnvironment()
{
    writeFile(m_rig->bundle().resource("node.env"), "TIDEWICK_TEST=from node.env\n");
    m_rig->node().start();
    QCOMPARE(m_rig->spawned().size(), 1U);
    const ChildSpec &spec = m_rig->spawned().front();
    QCOMPARE(spec.executable, m_rig->bundle().node());
    const fs::path configuration = m_rig->data() / "xrpld.cfg";
    QVERIFY(spec.arguments == (std::vector<std::string>{"--conf", configuration.string()}));
    QCOMPARE(spec.workingDirectory, m_rig->data());
    QVERIFY(spec.ownProcessGroup);
    QCOMPARE(spec.environment.at("TIDEWICK_TEST"), "from node.env");
    QCOMPARE(spec.environment.at("HOME"), qgetenv("HOME").toStdString());
    QCOMPARE(spec.standardOutput, spec.standardError); // one descriptor is used for both
    QVERIFY(contentOf(configuration).startsWith("# THIS FILE IS GENERATED"));
    QVERIFY(fs::exists(m_rig->data() / "validators.txt"));
}

void TestNodeControllerStart::outputIsAppended()
{
    fs::create_directories(m_rig->data());
    writeFile(m_rig->data() / "xrpld.stdout.log", "an earlier run\n");
    m_rig->setNode(TIDEWICK_CHILD_PATH, {"report"});
    m_rig->node().start();
    QVERIFY(m_rig->waitForPhase(Phase::Error));
    const QByteArray log = m_rig->log();
    QVERIFY(log.startsWith("an earlier run\n"));
    QVERIFY(log.contains("\ndescriptors: 0 1 2\n"));
    QVERIFY(log.contains("\ninput ends: 1\n"));
    QVERIFY(log.contains("on standard error\n"));
    QVERIFY(log.contains("\nleads its group: 1\n"));
}

void TestNodeControllerStart::secondStartIsIgnored()
{
    m_rig->node().start();
    m_rig->node().start();
    QVERIFY(m_rig->waitForPhase(Phase::Full));
    m_rig->node().start();
    QCOMPARE(m_rig->spawned().size(), 1U);
    QCOMPARE(m_rig->status().phase, Phase::Full);
}

void TestNodeControllerStart::blockedStart()
{
    m_rig->node().setStartBlocked(QStringLiteral("Not now"));
    m_rig->node().start();
    QCOMPARE(m_rig->status().detail, QStringLiteral("Not now"));
    QCOMPARE(m_rig->status().phase, Phase::Stopped);
    QVERIFY(m_rig->spawned().empty());
    m_rig->node().setStartBlocked(std::nullopt);
    m_rig->node().start();
    QCOMPARE(m_rig->status().phase, Phase::Starting);
}

void TestNodeControllerStart::portTaken_data()
{
    QTest::addColumn<QList<quint16>>("ports");
    QTest::newRow("RPC") << QList<quint16>{NodePorts::rpc};
    QTest::newRow("WebSocket") << QList<quint16>{NodePorts::webSocket};
    QTest::newRow("both") << QList<quint16>{NodePorts::rpc, NodePorts::webSocket};
}

void TestNodeControllerStart::portTaken()
{
    QFETCH(QList<quint16>, ports);
    std::list<QTcpServer> servers;
    for (const quint16 port : ports)
        QVERIFY(servers.emplace_back().listen(QHostAddress::LocalHost, port));
    m_rig->node().start();
    QCOMPARE(m_rig->status().phase, Phase::Error);
    const QString text =
        QStringLiteral("Port 15005 or 16006 is in use. Another node may be running.");
    QCOMPARE(m_rig->status().detail, text);
    QCOMPARE(m_rig->status().errorText, text);
    QVERIFY(!m_rig->status().hasProcess);
    QVERIFY(m_rig->spawned().empty());
    QVERIFY(!fs::exists(m_rig->data()));
}

void TestNodeControllerStart::diskGuard_data()
{
    QTest::addColumn<std::optional<double>>("free");
    QTest::addColumn<qint64>("guard");
    QTest::addColumn<QString>("error"); // empty if the start proceeds
    using Free = std::optional<double>;
    QTest::newRow("enough") << Free(10.1) << qint64(10) << QString();
    QTest::newRow("equal") << Free(10) << qint64(10) << QString();
    QTest::newRow("below") << Free(9.96) << qint64(10)
                           << QStringLiteral("Only 10.0 GB free; the disk guard needs 10 GB.");
    QTest::newRow("tie to even") << Free(2.25) << qint64(50)
                                 << QStringLiteral("Only 2.2 GB free; the disk guard needs 50 GB.");
    QTest::newRow("full disk") << Free(0) << qint64(5)
                               << QStringLiteral("Only 0.0 GB free; the disk guard needs 5 GB.");
    QTest::newRow("no guard") << Free(0) << qint64(0) << QString();
    QTest::newRow("unknown") << Free() << qint64(10) << QString();
}

void TestNodeControllerStart::diskGuard()
{
    QFETCH(std::optional<double>, free);
    QFETCH(qint64, guard);
    QFETCH(QString, error);
    m_rig->setFreeGB(free);
    m_rig->defaults().setInteger(Settings::diskGuardFreeGB.key, guard);
    m_rig->node().start();
    QCOMPARE(m_rig->status().errorText.value_or(QString()), error);
    QCOMPARE(m_rig->status().phase, error.isEmpty() ? Phase::Starting : Phase::Error);
    QCOMPARE(m_rig->spawned().size(), error.isEmpty() ? 1U : 0U);
}

void TestNodeControllerStart::settingsAreReadAtEachStart()
{
    m_rig->setFreeGB(15);
    m_rig->defaults().setInteger(Settings::diskGuardFreeGB.key, 20);
    m_rig->node().start();
    QCOMPARE(m_rig->status().phase, Phase::Error);
    m_rig->defaults().setInteger(Settings::diskGuardFreeGB.key, 10);
    m_rig->node().start();
    QCOMPARE(m_rig->status().phase, Phase::Starting);
}

void TestNodeControllerStart::cannotStart_data()
{
    QTest::addColumn<std::function<void(NodeRig &)>>("obstacle");
    QTest::addColumn<std::function<QString(NodeRig &)>>("reason");
    using Obstacle = std::function<void(NodeRig &)>;
    using Reason = std::function<QString(NodeRig &)>;
    const auto text = [](const fs::path &path, const char *reason) {
        return QString::fromStdString(path.string() + ": " + reason);
    };

    QTest::newRow("no template") << Obstacle([](NodeRig &rig) {
        fs::remove(rig.bundle().resource("xrpld.cfg.in"));
    }) << Reason([](NodeRig &) { return QStringLiteral("missing bundle resource xrpld.cfg.in"); });
    QTest::newRow("no environment")
        << Obstacle([](NodeRig &rig) { fs::remove(rig.bundle().resource("node.env")); })
        << Reason([](NodeRig &) { return QStringLiteral("missing bundle resource node.env"); });
    QTest::newRow("no executable")
        << Obstacle([](NodeRig &rig) { fs::remove(rig.bundle().node()); })
        << Reason([=](NodeRig &r) { return text(r.bundle().node(), "No such file or directory"); });
    QTest::newRow("not executable")
        << Obstacle([](NodeRig &rig) { ::chmod(rig.bundle().node().c_str(), 0644); })
        << Reason([=](NodeRig &r) { return text(r.bundle().node(), "Permission denied"); });
    QTest::newRow("data folder is a file")
        << Obstacle([](NodeRig &rig) { writeFile(rig.data(), "x"); })
        << Reason([=](NodeRig &r) { return text(r.data(), "Not a directory"); });
    QTest::newRow("log is a folder") << Obstacle([](NodeRig &rig) {
        fs::create_directories(rig.data() / "xrpld.stdout.log");
    }) << Reason([=](NodeRig &r) { return text(r.data() / "xrpld.stdout.log", "Is a directory"); });
    QTest::newRow("configuration is a folder")
        << Obstacle([](NodeRig &rig) { fs::create_directories(rig.data() / "xrpld.cfg"); })
        << Reason([=](NodeRig &r) { return text(r.data() / "xrpld.cfg", "Is a directory"); });
}

void TestNodeControllerStart::cannotStart()
{
    QFETCH(std::function<void(NodeRig &)>, obstacle);
    QFETCH(std::function<QString(NodeRig &)>, reason);
    obstacle(*m_rig);
    const pid_t childrenBefore = ::waitpid(-1, nullptr, WNOHANG); // a sanitizer may add some
    m_rig->node().start();
    QCOMPARE(m_rig->status().phase, Phase::Error);
    QCOMPARE(m_rig->status().detail, QLatin1String("Could not start the node: ") + reason(*m_rig));
    QVERIFY(!m_rig->status().hasProcess);
    QCOMPARE(::waitpid(-1, nullptr, WNOHANG), childrenBefore);
}

void TestNodeControllerStart::rotatesTheLogs()
{
    fs::create_directories(m_rig->data());
    for (const char *name : {"xrpld.stdout.log", "debug.log"}) {
        writeFile(m_rig->data() / name, {});
        fs::resize_file(m_rig->data() / name, 67'108'865);
    }
    m_rig->node().start();
    for (const char *name : {"xrpld.stdout.log.1", "debug.log.1"})
        QCOMPARE(fs::file_size(m_rig->data() / name), 67'108'865U);
    QVERIFY(m_rig->waitForPhase(Phase::Full));
    QVERIFY(m_rig->log().size() < 1'000'000);
}

void TestNodeControllerStart::exitsUnexpectedly_data()
{
    QTest::addColumn<QByteArray>("scenario");
    QTest::addColumn<QString>("how");
    const auto row = [](const char *scenario, const char *how) {
        QTest::newRow(scenario) << QByteArray(scenario) << QString::fromLatin1(how);
    };
    row("exit=0", "exit status 0");
    row("exit=1", "exit status 1");
    row("exit=255", "exit status 255");
    row("signal=SEGV", "signal 11");
    row("signal=KILL", "signal 9");
    row("signal=TERM", "signal 15");
    row("signal=ABRT", "signal 6");
}

void TestNodeControllerStart::exitsUnexpectedly()
{
    QFETCH(QByteArray, scenario);
    QFETCH(QString, how);
    m_rig->setScenario("lines=3 " + scenario);
    m_rig->node().start();
    QVERIFY(m_rig->waitUntil([&] { return !m_rig->status().hasProcess; }));
    const NodeStatus &status = m_rig->status();
    QCOMPARE(status.phase, Phase::Error);
    const QString first = QStringLiteral("The node exited unexpectedly (%1).").arg(how);
    QCOMPARE(status.detail, first);
    QVERIFY(status.errorText->startsWith(first + QLatin1String("\n\n")));
    QVERIFY(status.errorText->endsWith(QLatin1String("\nline 1\nline 2\nline 3\n")));
    // The figures of the run are cleared; those of the disk are kept.
    QCOMPARE(status.uptime, NodeStatus::unknown());
    QCOMPARE(status.ledger, NodeStatus::unknown());
    QCOMPARE(status.memory, NodeStatus::unknown());
    QVERIFY(!status.peers && !status.ledgerSeq && !status.timeLeft);
    QCOMPARE(status.freeSpace, QStringLiteral("100.0 GB free"));
    QVERIFY(status.storeSize != NodeStatus::unknown());
}

void TestNodeControllerStart::tailOfThisRunOnly()
{
    m_rig->setScenario("lines=50 exit=1");
    m_rig->node().start();
    QVERIFY(m_rig->waitForPhase(Phase::Error));
    const QString first = *m_rig->status().errorText;
    QVERIFY(first.endsWith(QLatin1String("line 50\n")));
    QCOMPARE(first.count(u'\n'), 2 + 19); // the message, then twenty lines
    QVERIFY(!first.contains(QLatin1String("line 31\n")));

    m_rig->setNode(TIDEWICK_CHILD_PATH, {"exit", "4"});
    m_rig->node().start();
    QVERIFY(m_rig->waitUntil([&] { return !m_rig->status().hasProcess; }));
    QCOMPARE(*m_rig->status().errorText,
             QStringLiteral("The node exited unexpectedly (exit status 4).\n\n"));
}

void TestNodeControllerStart::tailOfALargeLog()
{
    m_rig->setScenario("output=3000000 lines=2 exit=1");
    m_rig->node().start();
    QVERIFY(m_rig->waitForPhase(Phase::Error));
    QVERIFY(fs::file_size(m_rig->data() / "xrpld.stdout.log") > 3'000'000U);
    QVERIFY(m_rig->status().errorText->endsWith(QLatin1String("line 1\nline 2\n")));
}

void TestNodeControllerStart::grandchildKeepsTheLog()
{
    m_rig->setScenario("grandchild=60 exit=3");
    m_rig->node().start();
    const auto grandchild = [&] {
        static const QRegularExpression note(QStringLiteral("NFO grandchild (\\d+)\n"));
        return note.match(QString::fromUtf8(m_rig->debugLog())).captured(1).toInt();
    };
    QVERIFY(m_rig->waitUntil([&] { return grandchild() > 0; }));
    const auto end = qScopeGuard([&] { ::kill(grandchild(), SIGKILL); });
    QVERIFY(m_rig->waitUntil([&] { return !m_rig->status().hasProcess; }));
    QCOMPARE(m_rig->status().detail,
             QStringLiteral("The node exited unexpectedly (exit status 3)."));
    QVERIFY(runs(grandchild())); // it still has the log open
}

void TestNodeControllerStart::startAfterAFailure()
{
    m_rig->setScenario("exit=1");
    m_rig->node().start();
    QVERIFY(m_rig->waitForPhase(Phase::Error));
    m_rig->setScenario("speed=50 state=full");
    m_rig->node().start();
    QCOMPARE(m_rig->status().phase, Phase::Starting);
    QVERIFY(!m_rig->status().errorText);
    QVERIFY(!m_rig->status().hasServerInfo);
    QVERIFY(m_rig->waitForPhase(Phase::Full));
}

void TestNodeControllerStart::destroyedWhileTheNodeRuns()
{
    m_rig->node().start();
    QVERIFY(m_rig->waitForPhase(Phase::Full));
    const pid_t child = m_rig->lastChild();
    m_rig->destroyNode();
    // The kernel ends the node together with this program. Until then it keeps answering.
    QVERIFY(rpcResult(NodePorts::rpc, QStringLiteral("ping")));
    QVERIFY(m_rig->noted("RPCHandler:NFO ping") == 1);
    QCOMPARE(::waitpid(child, nullptr, WNOHANG), 0);
}

TIDEWICK_LOOPBACK_TEST_MAIN(TestNodeControllerStart)
#include "tst_nodecontroller_start.moc"
