// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "platform/NodePorts.h"
#include "smoke/SmokeTest.h"
#include "support/NodeRig.h"
#include "support/RunProgram.h"
#include "support/Surroundings.h"

#include <QRegularExpression>
#include <QTcpServer>

#include <csignal>
#include <optional>

#include <fcntl.h>
#include <sys/wait.h>

using namespace tidewick;
using namespace std::chrono_literals;
namespace fs = std::filesystem;

/// Tests "--smoke" in this process, with a fake clock, and as a separate process.
class TestSmokeTest : public QObject
{
    Q_OBJECT

private slots:
    void passes();
    void oddTextsFromTheNode();
    void memoryNeverReported();
    void neverAnswers();
    void failsAtOnce();
    void nodeDiesBeforeAnswering();
    void nodeDiesAfterAnswering();
    void interrupted();
    void lostTranscript();
    void destroyedWhileRunning();

    void processPasses();
    void processStartsFromEmpty();
    void processWithoutANode();
    void processWithAPortTaken();
    void processInterrupted_data();
    void processInterrupted();
    void processWithAClosedOutput();

private:
    /// Runs the smoke test on the rig's host, in fake time, and returns its exit status. Calls
    /// `printed` with each line of the transcript.
    int runSmoke(NodeRig &rig, const std::function<void(const std::string &)> &printed = {});

    QStringList m_transcript;
};

namespace {

constexpr int patience = 30'000; // milliseconds

fs::path smokeFolder()
{
    return fs::path(qgetenv("XDG_DATA_HOME").toStdString()) / "Tidewick-smoke";
}

ChildSpec smokeProcess(const TestBundle &bundle, const char *scenario)
{
    ChildSpec spec;
    spec.executable = bundle.application();
    spec.arguments = {"--smoke"};
    spec.environment["TIDEWICK_SIMNODE"] = scenario;
    return spec;
}

/// The debug log of the smoke test's node.
QByteArray nodeLog()
{
    const fs::path file = smokeFolder() / "debug.log";
    return fs::exists(file) ? contentOf(file) : QByteArray();
}

/// Whether any process has the smoke test's folder as its working directory.
bool nodeRuns()
{
    for (const fs::directory_entry &process : fs::directory_iterator("/proc")) {
        std::error_code error;
        if (fs::read_symlink(process.path() / "cwd", error) == smokeFolder() && !error)
            return true;
    }
    return false;
}

} // namespace

int TestSmokeTest::runSmoke(NodeRig &rig, const std::function<void(const std::string &)> &printed)
{
    m_transcript.clear();
    SmokeTest test(rig.data(), rig.host(), [&](const std::string &line) {
        m_transcript += QString::fromStdString(line);
        if (printed)
            printed(line);
        return true;
    });
    QSignalSpy finished(&test, &SmokeTest::finished);
    test.start();
    [&] { QVERIFY(rig.runUntil([&] { return finished.count() > 0; })); }();
    return finished.isEmpty() ? -1 : finished[0][0].toInt();
}

void TestSmokeTest::passes()
{
    NodeRig rig;
    QCOMPARE(runSmoke(rig), 0);
    QCOMPARE(m_transcript.size(), 4);
    QCOMPARE(m_transcript[0],
             QStringLiteral("smoke: data %1").arg(QString::fromStdString(rig.data().string())));
    QCOMPARE(m_transcript[1], QStringLiteral("smoke: server_info answered (Following mainnet)"));
    QVERIFY(m_transcript[2].startsWith(QStringLiteral("smoke: memory ")));
    QVERIFY(m_transcript[2].contains(QStringLiteral(" · peak ")));
    QCOMPARE(m_transcript[3], QStringLiteral("smoke: ok, stopped (smoke done)"));
}

/// A line of the transcript stays a single line, without control characters for the terminal.
void TestSmokeTest::oddTextsFromTheNode()
{
    NodeRig rig;
    rig.setScenario("speed=50 peers=2 state=\x1b[2Jodd\xE2\x80\xAE\xE2\x80\xA9name");
    QCOMPARE(runSmoke(rig), 0);
    QCOMPARE(m_transcript[1],
             QStringLiteral("smoke: server_info answered (2 peers ( [2Jodd name))"));
}

void TestSmokeTest::memoryNeverReported()
{
    NodeRig rig;
    rig.setSandboxed();
    rig.setScenario("speed=50 state=connected peers=2 process=no");
    const auto begin = rig.clock().continuousNow();
    QCOMPARE(runSmoke(rig), 0);
    QVERIFY(rig.clock().continuousNow() - begin >= 60s);
    QCOMPARE(m_transcript[1], QStringLiteral("smoke: server_info answered (2 peers (connected))"));
    QCOMPARE(m_transcript[2], QStringLiteral("smoke: memory –"));
    QCOMPARE(m_transcript[3], QStringLiteral("smoke: ok, stopped (smoke done)"));
}

void TestSmokeTest::neverAnswers()
{
    NodeRig rig;
    rig.setScenario("listen=no");
    const auto begin = rig.clock().continuousNow();
    QCOMPARE(runSmoke(rig), 1);
    QVERIFY(rig.clock().continuousNow() - begin >= 180s);
    QCOMPARE(m_transcript.last(), QStringLiteral("smoke: FAIL no server_info: timed out"));
    QCOMPARE(rig.noted("signal 15"), 1);
}

void TestSmokeTest::failsAtOnce()
{
    NodeRig rig;
    fs::remove(rig.bundle().resource("node.env"));
    const auto begin = rig.clock().continuousNow();
    QCOMPARE(runSmoke(rig), 1);
    QVERIFY(rig.clock().continuousNow() - begin < 5s);
    QCOMPARE(m_transcript.last(), QStringLiteral("smoke: FAIL no server_info: Could not start the "
                                                 "node: missing bundle resource node.env"));
}

void TestSmokeTest::nodeDiesBeforeAnswering()
{
    NodeRig rig;
    rig.setScenario("lines=1 exit=1");
    QCOMPARE(runSmoke(rig), 1);
    QVERIFY(m_transcript.last().startsWith(QStringLiteral(
        "smoke: FAIL no server_info: The node exited unexpectedly (exit status 1).\n\n")));
    QVERIFY(m_transcript.last().endsWith(QStringLiteral("line 1\n")));
}

void TestSmokeTest::nodeDiesAfterAnswering()
{
    NodeRig rig;
    rig.setSandboxed();
    rig.setScenario("speed=50 process=no"); // so that it waits for the memory figure
    QCOMPARE(runSmoke(rig,
                      [&](const std::string &line) {
                          if (line.find("answered") != std::string::npos)
                              ::kill(rig.lastChild(), SIGKILL);
                      }),
             1);
    QVERIFY(m_transcript.last().startsWith(
        QStringLiteral("smoke: FAIL after stop: The node exited unexpectedly (signal 9).")));
}

void TestSmokeTest::interrupted()
{
    NodeRig rig;
    rig.setScenario("speed=50 rpc=silent");
    SmokeTest test(rig.data(), rig.host(), [](const std::string &) { return true; });
    QSignalSpy finished(&test, &SmokeTest::finished);
    test.start();
    test.interrupt(SIGTERM);
    test.interrupt(SIGINT);
    QVERIFY(rig.runUntil([&] { return finished.count() > 0; }));
    QCOMPARE(finished.count(), 1);
    QCOMPARE(finished[0][0].toInt(), 128 + SIGTERM);
}

void TestSmokeTest::lostTranscript()
{
    NodeRig rig;
    SmokeTest test(rig.data(), rig.host(), [](const std::string &) { return false; });
    QSignalSpy finished(&test, &SmokeTest::finished);
    test.start();
    QVERIFY(rig.runUntil([&] { return finished.count() > 0; }));
    QCOMPARE(finished[0][0].toInt(), 1);
}

void TestSmokeTest::destroyedWhileRunning()
{
    NodeRig rig;
    auto test = std::make_unique<SmokeTest>(rig.data(), rig.host(),
                                            [](const std::string &) { return true; });
    QSignalSpy finished(test.get(), &SmokeTest::finished);
    test->start();
    test->interrupt(SIGTERM);
    test.reset();
    QCOMPARE(finished.count(), 0);
}

void TestSmokeTest::processPasses()
{
    const TestBundle bundle;
    const Outcome outcome = runProgram(smokeProcess(bundle, "speed=20"));
    QCOMPARE(outcome.status, 0);
    QCOMPARE(outcome.error, QByteArray());
    const QString path = QRegularExpression::escape(QString::fromStdString(smokeFolder().string()));
    const QRegularExpression transcript(
        QStringLiteral("^smoke: data %1\nsmoke: server_info answered \\([^\n]+\\)\n"
                       "smoke: memory [0-9.]+ MB · peak [0-9.]+ MB\n"
                       "smoke: ok, stopped \\(smoke done\\)\n$")
            .arg(path));
    QVERIFY2(transcript.match(QString::fromUtf8(outcome.output)).hasMatch(), outcome.output);
    for (const char *name : {"xrpld.cfg", "validators.txt", "xrpld.stdout.log", "debug.log", "db"})
        QVERIFY2(fs::exists(smokeFolder() / name), name);
    QVERIFY(!nodeRuns());
}

void TestSmokeTest::processStartsFromEmpty()
{
    fs::create_directories(smokeFolder() / "db");
    writeFile(smokeFolder() / "db" / "stale", "x");
    writeFile(smokeFolder() / "xrpld.stdout.log", "stale\n");
    const TestBundle bundle;
    QCOMPARE(runProgram(smokeProcess(bundle, "speed=20")).status, 0);
    QVERIFY(!fs::exists(smokeFolder() / "db" / "stale"));
    QVERIFY(!contentOf(smokeFolder() / "xrpld.stdout.log").contains("stale"));
}

void TestSmokeTest::processWithoutANode()
{
    const TestBundle bundle;
    fs::remove(bundle.node());
    const Outcome outcome = runProgram(smokeProcess(bundle, ""));
    QCOMPARE(outcome.status, 1);
    QCOMPARE(outcome.output, "smoke: data " + QByteArray::fromStdString(smokeFolder().string())
                                 + "\nsmoke: FAIL no server_info: Could not start the node: "
                                 + QByteArray::fromStdString(bundle.node().string())
                                 + ": No such file or directory\n");
}

void TestSmokeTest::processWithAPortTaken()
{
    const TestBundle bundle;
    QTcpServer server;
    QVERIFY(server.listen(QHostAddress::LocalHost, NodePorts::webSocket));
    const Outcome outcome = runProgram(smokeProcess(bundle, ""));
    QCOMPARE(outcome.status, 1);
    QVERIFY(outcome.output.endsWith("\nsmoke: FAIL no server_info: Port 15005 or 16006 is in use. "
                                    "Another node may be running.\n"));
}

void TestSmokeTest::processInterrupted_data()
{
    QTest::addColumn<int>("signalNumber");
    QTest::addColumn<QByteArray>("scenario");
    for (const int number : {SIGTERM, SIGINT, SIGHUP}) {
        QTest::addRow("%d while starting", number) << number << QByteArray("listen=no");
        // No memory figure is ever reported here, so the smoke test is still waiting for it.
        QTest::addRow("%d after the answer", number) << number << QByteArray("speed=20 process=no");
    }
}

void TestSmokeTest::processInterrupted()
{
    QFETCH(int, signalNumber);
    QFETCH(QByteArray, scenario);
    const TestBundle bundle;
    fs::remove_all(smokeFolder()); // removes the log of an earlier node
    ChildSpec spec = smokeProcess(bundle, scenario);
    spec.environment["APP_SANDBOX_CONTAINER_ID"] = "x";
    const TemporaryFolder folder;
    const fs::path output = folder.path() / "output";
    const UniqueDescriptor file(::open(output.c_str(), O_WRONLY | O_CREAT | O_CLOEXEC, 0600));
    spec.standardOutput = file.get();
    const fs::path errors = folder.path() / "errors";
    const UniqueDescriptor errorFile(::open(errors.c_str(), O_WRONLY | O_CREAT | O_CLOEXEC, 0600));
    spec.standardError = errorFile.get();
    const auto smoke = ChildProcess::start(spec);
    const QByteArray awaited = scenario == "listen=no" ? "smoke: data" : "answered";
    QTRY_VERIFY_WITH_TIMEOUT(contentOf(output).contains(awaited), patience);
    // Before that, the signal that stops the node would kill it.
    QTRY_VERIFY_WITH_TIMEOUT(nodeLog().contains("Application starting"), patience);

    QSignalSpy exited(smoke.get(), &ChildProcess::exited);
    ::kill(smoke->id(), signalNumber);
    QVERIFY(exited.wait(patience));
    QCOMPARE(exited[0][0].toInt(), 128 + signalNumber);
    QCOMPARE(exited[0][1].toBool(), false);
    QCOMPARE(contentOf(errors),
             QByteArray("smoke: waiting for the node to stop, for at most 90 s\n"));
    QVERIFY(!nodeRuns());
    QVERIFY(nodeLog().contains("stopping"));
}

void TestSmokeTest::processWithAClosedOutput()
{
    const TestBundle bundle;
    ChildSpec spec = smokeProcess(bundle, "speed=20");
    spec.arguments = {"-c", "exec \"$0\" --smoke >&-", bundle.application().string()};
    spec.executable = "/bin/sh";
    QCOMPARE(runProgram(spec).status, 1);
    QVERIFY(contentOf(smokeFolder() / "xrpld.cfg").startsWith("# THIS FILE IS GENERATED"));
    QVERIFY(!nodeRuns());
}

TIDEWICK_LOOPBACK_TEST_MAIN(TestSmokeTest)
#include "tst_smoketest.moc"
