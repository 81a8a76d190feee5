// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "platform/files/Defaults.h"
#include "support/PseudoTerminal.h"
#include "support/RunProgram.h"
#include "support/Surroundings.h"
#include "support/TestBundle.h"

#include <QRegularExpression>

#include <csignal>
#include <optional>

using namespace tidewick;
namespace fs = std::filesystem;

/// Tests the modes for scripts as separate processes: bytes on both streams, exit status, files.
class TestToolingModes : public QObject
{
    Q_OBJECT

private slots:
    void init();

    void usage_data();
    void usage();
    void renderPrintsThePath();
    void renderIntoATemporaryFolder();
    void renderIntoAnyName_data();
    void renderIntoAnyName();
    void renderUsesTheSettings();
    void renderFailures();
    void renderWinsOverSmoke();
    void firstOfTwoWins();
    void bundleMayBeMovedAndLinkedTo();
    void nodeVersion();
    void nodeVersionPassesTheStatusOn_data();
    void nodeVersionPassesTheStatusOn();
    void nodeVersionWithoutANode();
    void describe_data();
    void describe();
    void describeToATerminal();
    void describeHasItsOwnSettings();
    void unwritableOutput_data();
    void unwritableOutput();
    void closedStreamsAreNotReused();
    void createsNoOtherFiles();

private:
    Outcome run(std::vector<std::string> arguments) const
    {
        ChildSpec spec;
        spec.executable = m_bundle->application();
        spec.arguments = std::move(arguments);
        spec.workingDirectory = m_path;
        return runProgram(spec);
    }
    /// Runs a shell command line in which $0 is the application.
    Outcome shell(const char *line) const
    {
        ChildSpec spec;
        spec.executable = "/bin/sh";
        spec.arguments = {"-c", line, m_bundle->application().string()};
        spec.workingDirectory = m_path;
        return runProgram(spec);
    }
    static QByteArray bytes(const fs::path &path)
    {
        return QByteArray::fromStdString(path.string());
    }

    std::optional<TestBundle> m_bundle;
    std::optional<TemporaryFolder> m_folder;
    fs::path m_path;
};

void TestToolingModes::init()
{
    m_bundle.emplace();
    m_folder.emplace();
    m_path = m_folder->path();
}

void TestToolingModes::usage_data()
{
    QTest::addColumn<QByteArrayList>("arguments");
    QTest::addColumn<QByteArray>("message");
    const auto row = [](const char *name, const QByteArrayList &arguments, const char *message) {
        QTest::newRow(name) << arguments << QByteArray(message);
    };
    const char *describe = "usage: Quaymere --describe-storage <json>\n";
    row("render", {"--render-config"}, "usage: Quaymere --render-config <dir>\n");
    row("describe", {"--describe-storage"}, describe);
    row("describe an array", {"--describe-storage", "[]"}, describe);
    row("describe text", {"--describe-storage", "not JSON"}, describe);
    row("describe, empty operand", {"--describe-storage", ""}, describe);
    row("describe a number", {"--describe-storage", "5"}, describe);
    row("describe invalid UTF-8", {"--describe-storage", "{\"phase\":\"\xFF\"}"}, describe);
    row("describe an option", {"--describe-storage", "--smoke"}, describe);
    row("settings", {"--snapshot-settings"},
        "usage: Quaymere --snapshot-settings <png> [light|dark]\n");
    row("ledger", {"--snapshot-ledger"}, "usage: Quaymere --snapshot-ledger <png> [light|dark]\n");
    row("about", {"--snapshot-about"}, "usage: Quaymere --snapshot-about <png> [light|dark]\n");
    row("about, Dark", {"--snapshot-about", "a.png", "Dark"},
        "usage: Quaymere --snapshot-about <png> [light|dark]\n");
}

void TestToolingModes::usage()
{
    QFETCH(QByteArrayList, arguments);
    QFETCH(QByteArray, message);
    std::vector<std::string> list;
    for (const QByteArray &argument : arguments)
        list.push_back(argument.toStdString());
    QVERIFY(run(list) == (Outcome{"", message, 2, false}));
}

void TestToolingModes::renderPrintsThePath()
{
    const fs::path target = m_path / "a" / "b";
    QVERIFY(run({"--render-config", "a/b"})
            == (Outcome{bytes(target / "xrpld.cfg") + '\n', "", 0, false}));
    QVERIFY(contentOf(target / "xrpld.cfg").contains(bytes(target) + "/debug.log"));
    QVERIFY(fs::exists(target / "validators.txt"));
    // An absolute name is printed unchanged, except for the trailing slash.
    QVERIFY(run({"--render-config", target.string() + "/../c/"})
            == (Outcome{bytes(target) + "/../c/xrpld.cfg\n", "", 0, false}));
    QVERIFY(run({"--render-config", ""})
            == (Outcome{bytes(m_path / "xrpld.cfg") + '\n', "", 0, false}));
}

void TestToolingModes::renderIntoATemporaryFolder()
{
    ChildSpec spec;
    spec.executable = m_bundle->application();
    spec.arguments = {"--render-config", "-"};
    spec.environment["TMPDIR"] = (m_path / "temporary").string(); // created if necessary
    const Outcome first = runProgram(spec);
    const Outcome second = runProgram(spec);
    static const QRegularExpression line(
        QStringLiteral("^/.*/temporary/quaymere-render-[0-9A-F]{8}-[0-9A-F]{4}-[0-9A-F]{4}-"
                       "[0-9A-F]{4}-[0-9A-F]{12}/xrpld\\.cfg\n$"));
    for (const Outcome &outcome : {first, second}) {
        QCOMPARE(outcome.status, 0);
        QVERIFY2(line.match(QString::fromUtf8(outcome.output)).hasMatch(), outcome.output);
        QVERIFY(fs::exists(outcome.output.trimmed().toStdString()));
    }
    QVERIFY(first.output != second.output);
}

void TestToolingModes::renderIntoAnyName_data()
{
    QTest::addColumn<QByteArray>("name");
    for (const char *name : {"two words", "Ünï–😀", "raw \xFF", "--smoke", "~", "100%25", "a\nb"})
        QTest::newRow(name) << QByteArray(name);
}

void TestToolingModes::renderIntoAnyName()
{
    QFETCH(QByteArray, name);
    const fs::path target = m_path / name.toStdString();
    QVERIFY(run({"--render-config", name.toStdString()})
            == (Outcome{bytes(target / "xrpld.cfg") + '\n', "", 0, false}));
    QVERIFY(fs::exists(target / "xrpld.cfg"));
}

void TestToolingModes::renderUsesTheSettings()
{
    Defaults::standard().setInteger(QStringLiteral("roundGrowthMiB"), 4096);
    QCOMPARE(run({"--render-config", "x"}).status, 0);
    QVERIFY(contentOf(m_path / "x" / "xrpld.cfg").contains("round_growth_mib = 4096\n"));
    Defaults::standard().remove(QStringLiteral("roundGrowthMiB"));
}

void TestToolingModes::renderFailures()
{
    writeFile(m_path / "file", "x");
    QVERIFY(run({"--render-config", "file"})
            == (Outcome{"", "render failed: " + bytes(m_path / "file") + ": Not a directory\n", 1,
                        false}));
    fs::remove(m_bundle->resource("validators.txt"));
    QVERIFY(run({"--render-config", "x"})
            == (Outcome{"", "render failed: missing bundle resource validators.txt\n", 1, false}));
    fs::remove(m_bundle->resource("xrpld.cfg.in"));
    QVERIFY(run({"--render-config", "x"})
            == (Outcome{"", "render failed: missing bundle resource xrpld.cfg.in\n", 1, false}));
    QVERIFY(shell("mkdir gone && cd gone && rmdir ../gone && exec \"$0\" --render-config x")
            == (Outcome{"", "render failed: x: No such file or directory\n", 1, false}));
}

void TestToolingModes::renderWinsOverSmoke()
{
    QCOMPARE(run({"--smoke", "--render-config", "x"}).output,
             bytes(m_path / "x" / "xrpld.cfg") + '\n');
    QVERIFY(!fs::exists(fs::path(qgetenv("XDG_DATA_HOME").toStdString()) / "Tidewick-smoke"));
}

void TestToolingModes::firstOfTwoWins()
{
    QVERIFY(run({"--render-config", "a", "--render-config", "b"})
            == (Outcome{bytes(m_path / "a" / "xrpld.cfg") + '\n', "", 0, false}));
    QVERIFY(fs::exists(m_path / "a" / "xrpld.cfg"));
    QVERIFY(!fs::exists(m_path / "b"));
}

void TestToolingModes::bundleMayBeMovedAndLinkedTo()
{
    fs::create_directory(m_path / "bin");
    fs::create_symlink(m_bundle->application(), m_path / "bin" / "quaymere");
    ChildSpec spec;
    spec.executable = m_path / "bin" / "quaymere";
    spec.arguments = {"--node-version"};
    QCOMPARE(runProgram(spec).status, 0);

    const fs::path moved = m_path / "Somewhere Else.app";
    fs::copy(m_bundle->path(), moved, fs::copy_options::recursive);
    spec.executable = moved / "Contents" / "MacOS" / "Quaymere";
    QCOMPARE(runProgram(spec).status, 0);
    fs::remove(moved / "Contents" / "MacOS" / "xrpld");
    QCOMPARE(runProgram(spec).status, 1);
}

void TestToolingModes::nodeVersion()
{
    ChildSpec spec;
    spec.executable = m_bundle->node();
    spec.arguments = {"--version"};
    const Outcome own = runProgram(spec);
    QVERIFY(run({"--node-version"}) == own);
    QCOMPARE(own.status, 0);
    QVERIFY(own.output.contains("simulated"));
}

void TestToolingModes::nodeVersionPassesTheStatusOn_data()
{
    QTest::addColumn<QByteArray>("script");
    QTest::addColumn<Outcome>("expected");
    QTest::newRow("both streams") << QByteArray("echo out $# $1; echo err >&2; exit 3")
                                  << Outcome{"out 1 --version\n", "err\n", 3, false};
    QTest::newRow("255") << QByteArray("exit 255") << Outcome{"", "", 255, false};
    QTest::newRow("a signal") << QByteArray("kill -TERM $$") << Outcome{"", "", SIGTERM, false};
    QTest::newRow("input") << QByteArray("cat; echo end") << Outcome{"end\n", "", 0, false};
}

void TestToolingModes::nodeVersionPassesTheStatusOn()
{
    QFETCH(QByteArray, script);
    QFETCH(Outcome, expected);
    fs::remove(m_bundle->node());
    writeFile(m_bundle->node(), "#!/bin/sh\n" + script + '\n');
    fs::permissions(m_bundle->node(), fs::perms(0755));
    QVERIFY(run({"--describe-storage", "{}", "--node-version"}) == expected);
}

void TestToolingModes::nodeVersionWithoutANode()
{
    fs::remove(m_bundle->node());
    QVERIFY(
        run({"--node-version"})
        == (Outcome{"", "cannot run " + bytes(m_bundle->node()) + ": No such file or directory\n",
                    1, false}));
    writeFile(m_bundle->node(), "");
    QVERIFY(run({"--node-version"})
            == (Outcome{"", "cannot run " + bytes(m_bundle->node()) + ": Permission denied\n", 1,
                        false}));
}

void TestToolingModes::describe_data()
{
    QTest::addColumn<QByteArray>("json");
    QTest::addColumn<QByteArray>("line");
    QTest::newRow("empty") << QByteArray("{}") << QByteArray("Storage: up to date\n");
    QTest::newRow("building")
        << QByteArray(R"({"phase":"building","operation":"major","phase_seconds":30})")
        << QByteArray("Storage: rewriting the store · under a minute so far\n");
    QTest::newRow("blanks around") << QByteArray(" {} \n") << QByteArray("Storage: up to date\n");
    QTest::newRow("not ASCII") << QByteArray(R"({"phase":"blocked","blocked":"voll – 😀"})")
                               << QByteArray("Storage needs attention: voll – 😀\n");
    QTest::newRow("line feed") << QByteArray(R"({"phase":"blocked","blocked":"a\nb"})")
                               << QByteArray("Storage needs attention: a\nb\n");
}

void TestToolingModes::describe()
{
    QFETCH(QByteArray, json);
    QFETCH(QByteArray, line);
    QVERIFY(run({"--describe-storage", json.toStdString()}) == (Outcome{line, "", 0, false}));
}

/// Into a pipe the text goes as it is, but nothing in it may control a terminal.
void TestToolingModes::describeToATerminal()
{
    const char *hostile =
        R"({"phase":"blocked","blocked":"a\u001b]0;title\u0007\u001b[2Jb\nc\u202ed"})";
    PseudoTerminal terminal(80, 24);
    ChildSpec spec;
    spec.executable = TIDEWICK_QUAYMERE_PATH;
    spec.arguments = {"--describe-storage", hostile};
    spec.standardOutput = terminal.descriptor();
    QCOMPARE(ChildProcess::start(spec)->wait().status, 0);
    QCOMPARE(terminal.screen().screen().constFirst(),
             QStringLiteral("Storage needs attention: a ]0;title  [2Jb cd"));
    QCOMPARE(run({"--describe-storage", hostile}).output,
             QByteArray("Storage needs attention: a\x1b]0;title\x07\x1b[2Jb\nc\u202ed\n"));
}

void TestToolingModes::describeHasItsOwnSettings()
{
    const QString key = QStringLiteral("lastBuildSeconds.major");
    const std::string building = R"({"phase":"building","operation":"major","phase_seconds":300})";
    Defaults::standard().setReal(key, 900);
    QCOMPARE(run({"--describe-storage", building}).output,
             QByteArray("Storage: rewriting the store · 5m so far\n"));
    Defaults::suite(QStringLiteral("quaymere-describe-storage"))->setReal(key, 900);
    QCOMPARE(run({"--describe-storage", building}).output,
             QByteArray("Storage: rewriting the store · 5m so far, about 10m left\n"));
    Defaults::suite(QStringLiteral("quaymere-describe-storage"))->remove(key);
    Defaults::standard().remove(key);
}

void TestToolingModes::unwritableOutput_data()
{
    QTest::addColumn<QByteArray>("line");
    QTest::addColumn<QByteArray>("reason");
    QTest::newRow("full") << QByteArray("exec \"$0\" --describe-storage {} > /dev/full")
                          << QByteArray("No space left on device");
    QTest::newRow("closed") << QByteArray("exec \"$0\" --describe-storage {} >&-")
                            << QByteArray("Bad file descriptor");
    QTest::newRow("closed, render")
        << QByteArray("exec \"$0\" --render-config x >&-") << QByteArray("Bad file descriptor");
    // The reader closes the pipe before anything is written.
    QTest::newRow("reader gone") << QByteArray(
        "mkfifo pipe; (exec 3< pipe; exec 3<&-; echo > closed) & exec 4> pipe;"
        "while [ ! -e closed ]; do :; done; exec \"$0\" --describe-storage {} >&4")
                                 << QByteArray("Broken pipe");
}

void TestToolingModes::unwritableOutput()
{
    QFETCH(QByteArray, line);
    QFETCH(QByteArray, reason);
    QVERIFY(shell(line)
            == (Outcome{"", "cannot write standard output: " + reason + '\n', 1, false}));
}

void TestToolingModes::closedStreamsAreNotReused()
{
    // If the standard streams are closed, the files that a mode opens must not take their place.
    const Outcome outcome = shell("exec \"$0\" --render-config x <&- >&- 2>&-");
    QCOMPARE(outcome.status, 1);
    QVERIFY(contentOf(m_path / "x" / "xrpld.cfg").startsWith("# THIS FILE IS GENERATED"));
    QCOMPARE(contentOf(m_path / "x" / "validators.txt"),
             contentOf(m_bundle->resource("validators.txt")));
    QCOMPARE(shell("exec \"$0\" --describe-storage 2>&-").status, 2);
}

void TestToolingModes::createsNoOtherFiles()
{
    const fs::path data = m_path / "data";
    const fs::path configuration = m_path / "config";
    ChildSpec spec;
    spec.executable = m_bundle->application();
    spec.environment["XDG_DATA_HOME"] = data.string();
    spec.environment["XDG_CONFIG_HOME"] = configuration.string();
    for (const std::vector<std::string> &arguments :
         {std::vector<std::string>{"--describe-storage", "{}"},
          std::vector<std::string>{"--node-version"},
          std::vector<std::string>{"--render-config", (m_path / "x").string()}}) {
        spec.arguments = arguments;
        QCOMPARE(runProgram(spec).status, 0);
    }
    QVERIFY(!fs::exists(data));
    QVERIFY(!fs::exists(configuration));
}

TIDEWICK_TEST_MAIN(TestToolingModes)
#include "tst_toolingmodes.moc"
