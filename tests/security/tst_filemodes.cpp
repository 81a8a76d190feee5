// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "application/Desktop.h"
#include "application/LaunchedApplication.h"
#include "application/XWindows.h"
#include "platform/files/Defaults.h"
#include "support/RunProgram.h"
#include "support/Surroundings.h"

#include <QStandardPaths>

#include <csignal>

#include <sys/stat.h>
#include <unistd.h>

using namespace tidewick;
namespace fs = std::filesystem;

namespace {

/// Sets the umask of this process and its children for as long as the object exists.
class FileModeMask
{
public:
    explicit FileModeMask(mode_t mask) : m_before(::umask(mask)) {}
    FileModeMask(const FileModeMask &) = delete;
    FileModeMask &operator=(const FileModeMask &) = delete;
    ~FileModeMask() { ::umask(m_before); }

private:
    mode_t m_before;
};

QByteArray modeOf(const fs::path &path)
{
    struct stat status
    {
    };
    if (::stat(path.c_str(), &status) != 0)
        return "not there";
    return '0' + QByteArray::number(status.st_mode & 07777, 8);
}

constexpr uid_t somebodyElse = 65534;

} // namespace

/// Tests who else may read and write the files that the program creates, and how it treats files of
/// other users.
class TestFileModes : public QObject
{
    Q_OBJECT

private slots:
    void init();

    void application_data() { listMasks(); }
    void application();
    void smoke_data() { listMasks(); }
    void smoke();
    void renderedConfiguration_data() { listMasks(); }
    void renderedConfiguration();
    void settings_data() { listMasks(); }
    void settings();

    void existingFoldersKeepTheirModes();
    void nothingInTheTemporaryFolder_data();
    void nothingInTheTemporaryFolder();
    void folderOfAnotherUser_data();
    void folderOfAnotherUser();
    void linkInPlaceOfTheSmokeFolder();
    void sharedFolderForTheSmokeTest();

private:
    static void listMasks();
    /// A command line of the program with these options, in the home of this test.
    ChildSpec program(std::vector<std::string> arguments) const;
    /// Launches the application without a display or a bus.
    std::unique_ptr<LaunchedApplication> launch(ProcessEnvironment variables = {}) const;

    TestBundle m_bundle;
    std::optional<TemporaryFolder> m_home;
    fs::path m_data;
    fs::path m_configuration;
};

void TestFileModes::init()
{
    m_home.emplace();
    m_data = m_home->path() / "local" / "share";
    m_configuration = m_home->path() / "config";
}

void TestFileModes::listMasks()
{
    QTest::addColumn<uint>("mask");
    QTest::addColumn<QByteArray>("file");
    QTest::newRow("000") << 0U << QByteArray("0644");
    QTest::newRow("022") << 022U << QByteArray("0644");
    QTest::newRow("077") << 077U << QByteArray("0600");
}

ChildSpec TestFileModes::program(std::vector<std::string> arguments) const
{
    ChildSpec spec;
    spec.executable = m_bundle.application();
    spec.arguments = std::move(arguments);
    spec.environment["XDG_DATA_HOME"] = m_data.string();
    spec.environment["XDG_CONFIG_HOME"] = m_configuration.string();
    spec.environment["TIDEWICK_SIMNODE"] = "speed=20 state=full";
    return spec;
}

std::unique_ptr<LaunchedApplication> TestFileModes::launch(ProcessEnvironment variables) const
{
    variables.insert({{"DISPLAY", ""},
                      {"WAYLAND_DISPLAY", ""},
                      {"QT_QPA_PLATFORM", ""},
                      {"XDG_RUNTIME_DIR", ""},
                      {"XDG_DATA_HOME", m_data.string()},
                      {"XDG_CONFIG_HOME", m_configuration.string()}});
    return std::make_unique<LaunchedApplication>(m_bundle, "speed=20 state=full", variables);
}

void TestFileModes::application()
{
    QFETCH(uint, mask);
    QFETCH(QByteArray, file);
    const FileModeMask masked(mask);
    const auto application = launch();
    QVERIFY(waitUntil([&] { return application->output().contains("Full"); }));
    const fs::path folder = m_data / "Tidewick";
    QCOMPARE(modeOf(folder), "0700");
    // Parent folders that were missing are created with the same mode.
    QCOMPARE(modeOf(m_data), "0700");
    QCOMPARE(modeOf(m_data.parent_path()), "0700");
    for (const char *name : {"xrpld.cfg", "validators.txt", "xrpld.stdout.log"})
        QCOMPARE(name + (' ' + modeOf(folder / name)), name + (' ' + file));
    QCOMPARE(modeOf(m_configuration / "Tidewick"), "0700");
    QVERIFY(application->endsWell(SIGTERM));
}

void TestFileModes::smoke()
{
    QFETCH(uint, mask);
    QFETCH(QByteArray, file);
    const FileModeMask masked(mask);
    const Outcome outcome = runProgram(program({"--smoke"}));
    QVERIFY2(outcome.status == 0, outcome.output + outcome.error);
    QCOMPARE(modeOf(m_data / "Tidewick-smoke"), "0700");
    QCOMPARE(modeOf(m_data / "Tidewick-smoke" / "xrpld.stdout.log"), file);
}

void TestFileModes::renderedConfiguration()
{
    QFETCH(uint, mask);
    QFETCH(QByteArray, file);
    const FileModeMask masked(mask);
    const fs::path folder = m_home->path() / "made" / "on the way";
    QCOMPARE(runProgram(program({"--render-config", folder.string()})).status, 0);
    QCOMPARE(modeOf(folder), "0700");
    QCOMPARE(modeOf(folder / "xrpld.cfg"), file);
    const Outcome outcome = runProgram(program({"--render-config", "-"}));
    QCOMPARE(modeOf(fs::path(outcome.output.toStdString()).parent_path()), "0700");
}

void TestFileModes::settings()
{
    QFETCH(uint, mask);
    const FileModeMask masked(mask);
    // Qt writes the file with its usual mode; the folder protects it.
    Defaults defaults(m_configuration / "Tidewick" / "settings.ini");
    QVERIFY(defaults.setInteger(QStringLiteral("roundGrowthMiB"), 1024));
    QCOMPARE(modeOf(m_configuration), "0700");
    QCOMPARE(modeOf(m_configuration / "Tidewick"), "0700");
    QCOMPARE(modeOf(m_configuration / "Tidewick" / "settings.ini"),
             '0' + QByteArray::number(0666 & ~mask, 8));
}

void TestFileModes::existingFoldersKeepTheirModes()
{
    for (const fs::path &folder : {m_data / "Tidewick", m_configuration / "Tidewick"}) {
        fs::create_directories(folder);
        QCOMPARE(::chmod(folder.c_str(), 0751), 0);
    }
    const auto application = launch();
    QVERIFY(waitUntil([&] { return application->output().contains("Full"); }));
    QVERIFY(application->endsWell(SIGTERM));
    for (const fs::path &folder : {m_data / "Tidewick", m_configuration / "Tidewick"})
        QCOMPARE(modeOf(folder), "0751");
}

void TestFileModes::nothingInTheTemporaryFolder_data()
{
    QTest::addColumn<bool>("hasDisplay");
    QTest::newRow("in a terminal") << false;
    QTest::newRow("on a desktop") << true;
}

/// The folder may be shared by all users, so anybody could create a file with a predictable name
/// there first.
void TestFileModes::nothingInTheTemporaryFolder()
{
    QFETCH(bool, hasDisplay);
    const auto display = hasDisplay ? std::make_unique<XServer>() : nullptr;
    const fs::path temporary = m_home->path() / "tmp";
    fs::create_directory(temporary);
    ProcessEnvironment variables{{"TMPDIR", temporary.string()}};
    if (display)
        variables["DISPLAY"] = qgetenv("DISPLAY").toStdString();
    const auto application = launch(variables);
    const fs::path log = m_data / "Tidewick" / "debug.log";
    QVERIFY(waitUntil([&] {
        return fs::exists(log) && contentOf(log).contains("RPCHandler:NFO server_info")
               && (!display || isWindowShown(QStringLiteral("Tidewick")));
    }));
    // If the desktop does not provide a runtime folder, the toolkit creates one here and checks its
    // owner.
    for (const fs::directory_entry &entry : fs::directory_iterator(temporary)) {
        QVERIFY2(display && entry.path().filename().string().starts_with("runtime-"),
                 entry.path().c_str());
        QCOMPARE(modeOf(entry.path()), "0700");
    }
    QVERIFY(application->endsWell(SIGTERM));
}

void TestFileModes::folderOfAnotherUser_data()
{
    QTest::addColumn<bool>("isLink");
    QTest::newRow("a folder") << false;
    QTest::newRow("a link") << true;
}

void TestFileModes::folderOfAnotherUser()
{
    QFETCH(bool, isLink);
    const fs::path folder = m_data / "Tidewick";
    const fs::path target = m_home->path() / "target";
    fs::create_directories(m_data);
    fs::create_directory(isLink ? target : folder);
    if (isLink)
        fs::create_directory_symlink(target, folder);
    if (::lchown(folder.c_str(), somebodyElse, somebodyElse) != 0)
        QSKIP("Only root can change the owner of a folder");
    const auto application = launch();
    QVERIFY(waitUntil([&] { return application->output().contains("Error"); }));
    QVERIFY2(application->output().contains(QByteArray::fromStdString(folder.string())
                                            + ": belongs to another user"),
             application->output());
    QVERIFY(fs::is_empty(folder));
    QVERIFY(application->endsWell(SIGTERM));
}

void TestFileModes::linkInPlaceOfTheSmokeFolder()
{
    const fs::path precious = m_home->path() / "precious";
    fs::create_directories(m_data);
    fs::create_directory(precious);
    writeFile(precious / "file", "kept");
    fs::create_directory_symlink(precious, m_data / "Tidewick-smoke");
    QCOMPARE(runProgram(program({"--smoke"})).status, 0);
    QVERIFY(!fs::is_symlink(m_data / "Tidewick-smoke"));
    QCOMPARE(contentOf(precious / "file"), "kept");
    QCOMPARE(std::distance(fs::directory_iterator(precious), {}), 1);
}

/// If the data folder's parent is shared by all users, the folder may already exist, and this user
/// may not be allowed to remove it.
void TestFileModes::sharedFolderForTheSmokeTest()
{
    if (::geteuid() != 0)
        QSKIP("Only root can become another user");
    const fs::path folder = m_data / "Tidewick-smoke";
    fs::create_directories(folder);
    const fs::path all = fs::path(qgetenv("TMPDIR").toStdString()).parent_path();
    for (const fs::path &open : {all, m_home->path(), m_data.parent_path(), folder})
        ::chmod(open.c_str(), 0777);
    ::chmod(m_bundle.path().parent_path().c_str(), 0755);
    ::chmod(m_data.c_str(), 01777);

    ChildSpec spec = program({"--smoke"});
    const std::string user = std::to_string(somebodyElse);
    spec.arguments = {"--reuid=" + user, "--regid=" + user, "--clear-groups",
                      spec.executable.string(), "--smoke"};
    spec.executable = QStandardPaths::findExecutable(QStringLiteral("setpriv")).toStdString();
    if (spec.executable.empty())
        QSKIP("setpriv is not installed");
    const Outcome outcome = runProgram(spec);
    QCOMPARE(outcome.status, 1);
    QCOMPARE(outcome.output,
             QByteArray::fromStdString("smoke: data " + folder.string()
                                       + "\nsmoke: FAIL no server_info: Could not "
                                         "start the node: "
                                       + folder.string() + ": belongs to another user\n"));
    QVERIFY(fs::is_empty(folder));
}

TIDEWICK_LOOPBACK_TEST_MAIN(TestFileModes)
#include "tst_filemodes.moc"
