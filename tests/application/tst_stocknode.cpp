// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "application/Desktop.h"
#include "application/LaunchedApplication.h"
#include "application/TrayReader.h"
#include "support/RunProgram.h"
#include "support/Surroundings.h"

#include <QRegularExpression>

#include <csignal>

using namespace tidewick;
namespace fs = std::filesystem;

/// Tests the program with a stock node that uses the NuDB store. The node either gives recorded
/// answers of a real one or goes through its states.
class TestStockNode : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { m_bundle.setStore("NuDB"); }
    void cleanup() { fs::remove_all(applicationData()); }

    void rendersTheConfiguration();
    void smokePasses();
    void menuShowsTheRecordedAnswers();
    void pinnedStates_data();
    void pinnedStates();
    void goesThroughItsPhases();

private:
    Outcome run(std::vector<std::string> arguments) const;
    std::unique_ptr<LaunchedApplication> launchInTerminal(const QByteArray &scenario) const;

    TestBundle m_bundle;
};

namespace {

/// The lines of a section, without comments.
QByteArrayList section(const QByteArray &configuration, const QByteArray &name)
{
    const qsizetype begin = configuration.indexOf("\n[" + name + "]\n") + name.size() + 4;
    QByteArrayList lines;
    for (const QByteArray &line : configuration.sliced(begin).split('\n')) {
        if (line.startsWith('['))
            break;
        if (!line.isEmpty() && !line.startsWith('#'))
            lines += line;
    }
    return lines;
}

/// The expected section for a data folder.
QByteArrayList storeSection(const fs::path &data)
{
    return {"type = NuDB", "path = " + QByteArray::fromStdString(data) + "/db/nudb",
            "online_delete = 1024", "advisory_delete = 0"};
}

/// The counts of one poll are shown before the next poll sends its first request.
bool tookTheCounts()
{
    return waitUntil([] {
        const qsizetype asked = LaunchedApplication::debugLog().indexOf("get_counts");
        return asked >= 0 && LaunchedApplication::debugLog().indexOf("server_info", asked) > asked;
    });
}

} // namespace

Outcome TestStockNode::run(std::vector<std::string> arguments) const
{
    ChildSpec spec;
    spec.executable = m_bundle.application();
    spec.arguments = std::move(arguments);
    spec.environment["TIDEWICK_SIMNODE"] = "rpc=recorded";
    return runProgram(spec);
}

std::unique_ptr<LaunchedApplication>
TestStockNode::launchInTerminal(const QByteArray &scenario) const
{
    const ProcessEnvironment variables{{"DISPLAY", ""},
                                       {"WAYLAND_DISPLAY", ""},
                                       {"DBUS_SESSION_BUS_ADDRESS", ""},
                                       {"XDG_RUNTIME_DIR", applicationData().parent_path()}};
    return std::make_unique<LaunchedApplication>(m_bundle, scenario, variables);
}

void TestStockNode::rendersTheConfiguration()
{
    const TemporaryFolder folder;
    const Outcome outcome = run({"--render-config", folder.path().string()});
    QCOMPARE(outcome.status, 0);
    const fs::path file = folder.path() / "xrpld.cfg";
    QCOMPARE(outcome.output, QByteArray::fromStdString(file.string()) + '\n');
    QCOMPARE(section(contentOf(file), "node_db"), storeSection(folder.path()));
    // The requested history has to fit in the history that is kept.
    QCOMPARE(section(contentOf(file), "ledger_history"), QByteArrayList{"1024"});
}

void TestStockNode::smokePasses()
{
    const Outcome outcome = run({"--smoke"});
    const fs::path data = applicationData().parent_path() / "Tidewick-smoke";
    const QRegularExpression transcript(
        QStringLiteral("^smoke: data %1\nsmoke: server_info answered \\(Following mainnet\\)\n"
                       "smoke: memory [0-9.]+ MB · peak [0-9.]+ MB\n"
                       "smoke: ok, stopped \\(smoke done\\)\n$")
            .arg(QRegularExpression::escape(QString::fromStdString(data.string()))));
    QVERIFY2(transcript.match(QString::fromUtf8(outcome.output)).hasMatch(), outcome.output);
    QCOMPARE(outcome.error, QByteArray());
    QCOMPARE(outcome.status, 0);
    QCOMPARE(section(contentOf(data / "xrpld.cfg"), "node_db"), storeSection(data));
    QVERIFY(!fs::is_empty(data / "db" / "nudb"));
    QVERIFY(contentOf(data / "debug.log").contains("RPCHandler:NFO stop"));
}

/// Reads the menu from the program as a tray host does.
void TestStockNode::menuShowsTheRecordedAnswers()
{
    const SessionBus bus;
    const XServer display;
    const DesktopPanel panel;
    TrayReader reader(bus.connection());
    LaunchedApplication application(m_bundle, "rpc=recorded");
    QStringList rows;
    const auto hasRow = [&](const QString &text) {
        rows.clear();
        if (reader.findItem()) {
            for (const MenuEntry &entry : reader.menu())
                rows += entry.separator ? QStringLiteral("-") : entry.text;
        }
        return rows.contains(text);
    };
    QVERIFY(waitUntil([&] { return hasRow(QStringLiteral("Validated ledger: #12 (0s ago)")); }));
    QVERIFY(tookTheCounts());
    QVERIFY(hasRow(QStringLiteral("Full")));

    const QRegularExpression memory(QStringLiteral("^Memory: [0-9.]+ MB · peak [0-9.]+ MB$"));
    const QRegularExpression store(QStringLiteral("^Store: .+ · [0-9.]+ GB free$"));
    QCOMPARE(rows.indexOf(memory), 6);
    QCOMPARE(rows.indexOf(store), 7);
    rows.remove(6, 2);
    QCOMPARE(
        rows,
        QStringList({QStringLiteral("Full"), QStringLiteral("Following mainnet"),
                     QStringLiteral("-"), QStringLiteral("Validated ledger: #12 (0s ago)"),
                     QStringLiteral("Peers: 0"), QStringLiteral("Uptime: 0m"), QStringLiteral("-"),
                     QStringLiteral("Stop Node"), QStringLiteral("Clear Storage…"),
                     QStringLiteral("-"), QStringLiteral("Open Data Folder"),
                     QStringLiteral("Open Log"), QStringLiteral("Copy server_info JSON"),
                     QStringLiteral("Live Ledger…"), QStringLiteral("Settings…"),
                     QStringLiteral("About"), QStringLiteral("-"), QStringLiteral("Quit")}));
    QVERIFY(reader.click(QStringLiteral("Quit")));
    QVERIFY(application.process().waitForEnd());
    QCOMPARE(application.process().ending()->status, 0);
    QCOMPARE(LaunchedApplication::noted("RPCHandler:NFO stop"), 1);
}

void TestStockNode::pinnedStates_data()
{
    QTest::addColumn<QByteArray>("state");
    QTest::addColumn<QByteArray>("line");
    const auto row = [](const char *state, const char *line) {
        QTest::newRow(state) << QByteArray(state) << QByteArray(line);
    };
    row("disconnected", "Connecting… · 3 peers (disconnected)\n");
    row("connected", "Connecting… · 3 peers (connected)\n");
    row("syncing", "Syncing… · Catching up (syncing)\n");
    row("tracking", "Syncing… · Catching up (tracking)\n");
    row("full", "Full · Following mainnet\n");
}

void TestStockNode::pinnedStates()
{
    QFETCH(QByteArray, state);
    QFETCH(QByteArray, line);
    const auto application = launchInTerminal("speed=50 peers=3 state=" + state);
    QVERIFY(waitUntil([&] { return application->output().contains('\n' + line); }));
    QVERIFY2(application->output().endsWith('\n' + line), application->output());
    QVERIFY(application->endsWell(SIGTERM));
}

void TestStockNode::goesThroughItsPhases()
{
    const auto application = launchInTerminal("speed=3");
    QVERIFY(
        waitUntil([&] { return application->output().contains("Full · Following mainnet\n"); }));
    QVERIFY(tookTheCounts());
    QVERIFY(application->endsWell(SIGTERM));
    const QByteArray output = application->output();
    QVERIFY2(output.startsWith("Starting… · Opening the store\n"), output);
    QVERIFY2(output.contains("Connecting… · "), output);
    QVERIFY2(output.endsWith("Stopped · Quitting\n"), output);
    QVERIFY2(!output.contains("Bootstrapping") && !output.contains("Storage"), output);
}

TIDEWICK_LOOPBACK_TEST_MAIN(TestStockNode)
#include "tst_stocknode.moc"
