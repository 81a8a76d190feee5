// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "application/Beside.h"
#include "support/RunProgram.h"
#include "support/Surroundings.h"
#include "ui/ledger/Palette.h"

#include <QElapsedTimer>
#include <QImage>

#include <csignal>
#include <optional>
#include <set>

#include <sys/stat.h>

using namespace tidewick;
namespace fs = std::filesystem;

/// Tests the window pictures that the program renders without a display or a bus.
class TestSnapshots : public QObject
{
    Q_OBJECT

private slots:
    void init();

    void sizes_data();
    void sizes();
    void themesDiffer_data();
    void themesDiffer();
    void matchTheBaselines_data();
    void matchTheBaselines();
    void ledgerWaitsForANode();
    void ledgerShowsTheNode();
    void createNoOtherFiles();
    void leaveTheSettingsAlone();
    void replaceAnExistingFile();
    void writeLikeAnyProgram_data();
    void writeLikeAnyProgram();
    void failures_data();
    void failures();
    void keepTheOldFileWhenTheDiskIsFull();
    void failWithoutATemporaryFolder_data();
    void failWithoutATemporaryFolder();
    void failIfTheSettingsCannotBeRead();

private:
    Outcome run(std::vector<std::string> arguments, const ProcessEnvironment &variables = {}) const;
    QImage snapshot(const char *window, const char *theme, const char *scale = "1") const;

    std::optional<TemporaryFolder> m_folder;
    fs::path m_path;
};

namespace {

/// The tolerance for glyphs that different versions of the font library draw slightly differently.
/// A part of the window that moves or disappears changes far more.
constexpr double mostDifferent = 0.002;
constexpr int noticeable = 48;

/// The fraction of pixels that differ noticeably between two pictures of the same size.
double difference(const QImage &one, const QImage &other)
{
    qsizetype different = 0;
    for (int y = 0; y < one.height(); ++y) {
        for (int x = 0; x < one.width(); ++x) {
            const QColor a = one.pixelColor(x, y);
            const QColor b = other.pixelColor(x, y);
            const int distance =
                std::max({std::abs(a.red() - b.red()), std::abs(a.green() - b.green()),
                          std::abs(a.blue() - b.blue())});
            different += distance > noticeable ? 1 : 0;
        }
    }
    return double(different) / (double(one.width()) * one.height());
}

std::set<fs::path> filesBelow(const fs::path &folder)
{
    std::set<fs::path> files;
    for (const auto &entry : fs::recursive_directory_iterator(folder))
        files.insert(entry.path());
    return files;
}

/// What Qt creates if TMPDIR is of no use.
std::set<fs::path> runtimeFoldersInTheRoot()
{
    std::set<fs::path> found;
    for (const auto &entry : fs::directory_iterator("/"))
        if (entry.path().filename().string().starts_with("runtime-"))
            found.insert(entry.path());
    return found;
}

bool isShown(const QImage &picture, const QColor &color)
{
    for (int y = 0; y < picture.height(); ++y)
        for (int x = 0; x < picture.width(); ++x)
            if (picture.pixelColor(x, y) == color)
                return true;
    return false;
}

bool canMount()
{
    ChildSpec spec;
    spec.executable = "/usr/bin/unshare";
    spec.arguments = {"--map-root-user", "--mount", "true"};
    return runProgram(spec).status == 0;
}

void addWindows()
{
    QTest::addColumn<QByteArray>("window");
    QTest::newRow("settings") << QByteArray("settings");
    QTest::newRow("about") << QByteArray("about");
}

} // namespace

void TestSnapshots::init()
{
    m_folder.emplace();
    m_path = m_folder->path();
}

Outcome TestSnapshots::run(std::vector<std::string> arguments,
                           const ProcessEnvironment &variables) const
{
    ChildSpec spec;
    spec.executable = TIDEWICK_QUAYMERE_PATH;
    spec.arguments = std::move(arguments);
    spec.workingDirectory = m_path;
    for (const auto &[name, value] : variables)
        spec.environment[name] = value;
    return runProgram(spec);
}

QImage TestSnapshots::snapshot(const char *window, const char *theme, const char *scale) const
{
    const fs::path file = m_path / (std::string(window) + theme + ".png");
    const Outcome outcome = run({std::string("--snapshot-") + window, file.string(), theme},
                                {{"QT_SCALE_FACTOR", scale}});
    if (outcome != Outcome{{}, {}, 0, false})
        qFatal("status %d: %s", outcome.status, outcome.error.constData());
    return QImage(QString::fromStdString(file.string()));
}

void TestSnapshots::sizes_data()
{
    QTest::addColumn<QByteArray>("window");
    QTest::addColumn<int>("width");
    QTest::newRow("settings") << QByteArray("settings") << 520;
    QTest::newRow("about") << QByteArray("about") << 480;
}

void TestSnapshots::sizes()
{
    QFETCH(QByteArray, window);
    QFETCH(int, width);
    const QImage picture = snapshot(window, "light");
    QCOMPARE(picture.width(), width);
    QVERIFY2(picture.height() >= 400 && picture.height() <= 800,
             QByteArray::number(picture.height()));
    QCOMPARE(snapshot(window, "light", "2").size(), picture.size() * 2);
}

void TestSnapshots::themesDiffer_data()
{
    addWindows();
}

void TestSnapshots::themesDiffer()
{
    QFETCH(QByteArray, window);
    const QImage light = snapshot(window, "light");
    const QImage dark = snapshot(window, "dark");
    QCOMPARE(light.size(), dark.size());
    QVERIFY(light.pixelColor(2, 2).lightness() > 200);
    QVERIFY(dark.pixelColor(2, 2).lightness() < 60);
    QVERIFY(difference(light, dark) > 0.9);
    // The pictures depend on neither the clock nor chance.
    QCOMPARE(snapshot(window, "light"), light);
    QCOMPARE(snapshot(window, "dark"), dark);
}

void TestSnapshots::matchTheBaselines_data()
{
    QTest::addColumn<QByteArray>("window");
    QTest::addColumn<QByteArray>("theme");
    for (const char *window : {"settings", "about"})
        for (const char *theme : {"light", "dark"})
            QTest::addRow("%s %s", window, theme) << QByteArray(window) << QByteArray(theme);
}

void TestSnapshots::matchTheBaselines()
{
    QFETCH(QByteArray, window);
    QFETCH(QByteArray, theme);
    const QString name =
        QStringLiteral("%1-%2.png").arg(QLatin1String(window), QLatin1String(theme));
    // At a device pixel ratio of 2: at 1, Qt versions differ in how they round a line of text to
    // whole pixels.
    const QImage reference(QStringLiteral(TIDEWICK_TEST_DATA "/windows/") + name);
    const QImage picture = snapshot(window, theme, "2");
    QCOMPARE(picture.size(), reference.size());
    const double changed = difference(picture, reference);
    QVERIFY2(changed <= mostDifferent, QByteArray::number(changed));
}

void TestSnapshots::ledgerWaitsForANode()
{
    QElapsedTimer timer;
    timer.start();
    const QImage picture = snapshot("ledger", "dark", "2");
    QVERIFY(timer.elapsed() >= 15'000);
    QCOMPARE(picture.size(), QSize(800, 780) * 2);
    QCOMPARE(picture.pixelColor(2, 2), Palette({true}).bg);
    const QImage reference(QStringLiteral(TIDEWICK_TEST_DATA "/windows/ledger-dark.png"));
    const double changed = difference(picture, reference);
    QVERIFY2(changed <= mostDifferent, QByteArray::number(changed));
    QVERIFY(!isShown(picture, Palette({true}).accent)); // the dot of "Live"
}

void TestSnapshots::ledgerShowsTheNode()
{
    QCOMPARE(run({"--render-config", "data"}).status, 0);
    ChildSpec node;
    node.executable = TIDEWICK_SIMNODE_PATH;
    node.arguments = {"--conf", (m_path / "data/xrpld.cfg").string()};
    node.environment["TIDEWICK_SIMNODE"] = "state=full";
    const Beside beside(node);

    const QImage picture = snapshot("ledger", "light");
    QCOMPARE(picture.pixelColor(2, 2), Palette({false}).bg);
    QVERIFY(isShown(picture, Palette({false}).accent));
    QVERIFY(!beside.ending());
}

void TestSnapshots::createNoOtherFiles()
{
    const fs::path home = m_path / "home";
    const fs::path temporary = m_path / "tmp";
    fs::create_directory(home);
    fs::create_directory(temporary);
    const auto before = filesBelow(m_path);
    for (const char *option : {"--snapshot-settings", "--snapshot-about"}) {
        const Outcome outcome =
            run({option, "a.png"}, {{"HOME", home.string()},
                                    {"XDG_CONFIG_HOME", (home / "config").string()},
                                    {"XDG_DATA_HOME", (home / "data").string()},
                                    {"XDG_CACHE_HOME", (home / "cache").string()},
                                    {"TMPDIR", temporary.string()}});
        QCOMPARE(outcome, (Outcome{{}, {}, 0, false}));
    }
    auto after = filesBelow(m_path);
    QCOMPARE(after.erase(m_path / "a.png"), 1U);
    QVERIFY(after == before);
}

/// The window itself would correct the setting that is out of range.
void TestSnapshots::leaveTheSettingsAlone()
{
    const fs::path config = m_path / "config";
    const fs::path file = config / "Tidewick/settings.ini";
    fs::create_directories(file.parent_path());
    const QByteArray settings = "[General]\nautoStopAfterFullMinutes=-5\ndiskGuardFreeGB=50\n";
    writeFile(file, settings);
    const ProcessEnvironment variables{{"XDG_CONFIG_HOME", config.string()}};
    QCOMPARE(run({"--snapshot-settings", "a.png"}, variables).status, 0);
    QCOMPARE(contentOf(file), settings);

    // The pictures differ, so the stored settings are the ones shown.
    fs::remove(file);
    QCOMPARE(run({"--snapshot-settings", "b.png"}, variables).status, 0);
    QVERIFY(contentOf(m_path / "a.png") != contentOf(m_path / "b.png"));
}

void TestSnapshots::replaceAnExistingFile()
{
    writeFile(m_path / "a.png", QByteArray(1'000'000, 'x'));
    QCOMPARE(run({"--snapshot-about", "a.png"}).status, 0);
    QVERIFY(!QImage(QString::fromStdString((m_path / "a.png").string())).isNull());
    QVERIFY(fs::file_size(m_path / "a.png") < 1'000'000);
}

void TestSnapshots::writeLikeAnyProgram_data()
{
    QTest::addColumn<QByteArray>("prepare");
    QTest::addColumn<QByteArray>("named");
    QTest::addColumn<QByteArray>("written");
    QTest::addColumn<QByteArray>("check");
    const auto row = [](const char *name, const QByteArray &prepare, const QByteArray &named,
                        const QByteArray &written, const QByteArray &check) {
        QTest::newRow(name) << prepare << named << written << check;
    };
    row("link", "echo old >it.png; ln -s it.png link.png", "link.png", "it.png",
        "test -L link.png");
    row("chain of links", "mkdir a; ln -s a/b.png c.png; ln -s ../it.png a/b.png", "c.png",
        "it.png", "test -L c.png && test -L a/b.png");
    row("link to nothing", "ln -s it.png link.png", "link.png", "it.png", "test -L link.png");
    row("its mode", "echo old >it.png; chmod 600 it.png", "it.png", "it.png",
        "test $(stat -c %a it.png) = 600");
    row("a new file's mode", "umask 026", "it.png", "it.png", "test $(stat -c %a it.png) = 640");
    const QByteArray longest(251, 'n');
    row("longest name", ":", longest + ".png", longest + ".png", "true");
    row("mount point", "echo old >it.png; touch at.png; mount --bind it.png at.png", "at.png",
        "it.png", "true");
}

void TestSnapshots::writeLikeAnyProgram()
{
    QFETCH(QByteArray, prepare);
    QFETCH(QByteArray, named);
    QFETCH(QByteArray, written);
    QFETCH(QByteArray, check);
    const bool mounts = prepare.contains("mount");
    if (mounts && !canMount())
        QSKIP("Nothing can be mounted here: it requires user namespaces");
    const std::string script =
        (prepare + "; \"$0\" --snapshot-about \"$1\"; " + check).toStdString();
    ChildSpec spec;
    spec.executable = "/bin/sh";
    if (mounts) {
        spec.executable = "/usr/bin/unshare";
        spec.arguments = {"--map-root-user", "--mount", "sh"};
    }
    spec.arguments.insert(spec.arguments.end(),
                          {"-euc", script, TIDEWICK_QUAYMERE_PATH, named.toStdString()});
    spec.workingDirectory = m_path;
    QCOMPARE(runProgram(spec), (Outcome{{}, {}, 0, false}));
    QVERIFY(contentOf(m_path / written.toStdString()).startsWith("\x89PNG"));
}

void TestSnapshots::failures_data()
{
    QTest::addColumn<QByteArray>("path");
    QTest::newRow("missing folder") << QByteArray("missing/a.png");
    QTest::newRow("file as a folder") << QByteArray("file/a.png");
    QTest::newRow("folder") << QByteArray("folder");
    QTest::newRow("folder with a slash") << QByteArray("folder/");
    QTest::newRow("empty") << QByteArray("");
    QTest::newRow("disk full") << QByteArray("/dev/full");
    QTest::newRow("read-only file system") << QByteArray("/proc/a.png");
    QTest::newRow("name too long") << QByteArray(300, 'a');
    QTest::newRow("not UTF-8") << QByteArray("missing/\xff.png");
}

void TestSnapshots::failures()
{
    QFETCH(QByteArray, path);
    fs::create_directory(m_path / "folder");
    writeFile(m_path / "file", "content");
    const auto before = filesBelow(m_path);
    const Outcome outcome = run({"--snapshot-about", path.toStdString(), "dark"});
    QCOMPARE(outcome, (Outcome{{}, "cannot write " + path + '\n', 1, false}));
    QVERIFY(filesBelow(m_path) == before);
}

/// If the disk is full, the old picture stays intact.
void TestSnapshots::keepTheOldFileWhenTheDiskIsFull()
{
    writeFile(m_path / "a.png", "old");
    // No file may grow beyond 512 bytes.
    ChildSpec spec;
    spec.executable = "/bin/sh";
    spec.arguments = {"-c", "trap '' XFSZ; ulimit -f 1; exec \"$0\" --snapshot-about a.png",
                      TIDEWICK_QUAYMERE_PATH};
    spec.workingDirectory = m_path;
    const Outcome outcome = runProgram(spec);
    QCOMPARE(outcome, (Outcome{{}, "cannot write a.png\n", 1, false}));
    QCOMPARE(contentOf(m_path / "a.png"), QByteArray("old"));
    QCOMPARE(filesBelow(m_path).size(), 1U);
}

void TestSnapshots::failWithoutATemporaryFolder_data()
{
    QTest::addColumn<QByteArray>("prepare");
    QTest::addColumn<QByteArray>("folder");
    QTest::newRow("relative to a folder that is gone")
        << QByteArray("mkdir gone; cd gone; rmdir ../gone") << QByteArray("temporary");
    QTest::newRow("missing") << QByteArray(":") << QByteArray("/nowhere/temporary");
    QTest::newRow("a file") << QByteArray(":") << QByteArray("/dev/null");
}

void TestSnapshots::failWithoutATemporaryFolder()
{
    QFETCH(QByteArray, prepare);
    QFETCH(QByteArray, folder);
    const auto before = runtimeFoldersInTheRoot();
    for (const char *option : {"--snapshot-settings", "--snapshot-about"}) {
        ChildSpec spec;
        spec.executable = "/bin/sh";
        spec.arguments = {"-euc", (prepare + "; exec \"$0\" \"$1\" a.png").toStdString(),
                          TIDEWICK_QUAYMERE_PATH, option};
        spec.workingDirectory = m_path;
        spec.environment["TMPDIR"] = folder.toStdString();
        const Outcome outcome = runProgram(spec);
        QVERIFY(!outcome.signaled);
        QCOMPARE(outcome.status, 1);
        QVERIFY2(outcome.error.endsWith("No such file or directory\n")
                     || outcome.error.endsWith("Not a directory\n"),
                 outcome.error);
        QVERIFY(filesBelow(m_path).empty());
        QVERIFY(runtimeFoldersInTheRoot() == before);
    }
}

/// They would otherwise look like the defaults.
void TestSnapshots::failIfTheSettingsCannotBeRead()
{
    const fs::path file = m_path / "config/Tidewick/settings.ini";
    fs::create_directories(file.parent_path());
    fs::create_symlink(file.filename(), file);
    const Outcome outcome =
        run({"--snapshot-settings", "a.png"}, {{"XDG_CONFIG_HOME", (m_path / "config").string()}});
    QCOMPARE(outcome.status, 1);
    QVERIFY(outcome.error.startsWith(QByteArray::fromStdString(file.string()) + ": "));
    QVERIFY(!fs::exists(m_path / "a.png"));
}

TIDEWICK_LOOPBACK_TEST_MAIN(TestSnapshots)
#include "tst_snapshots.moc"
