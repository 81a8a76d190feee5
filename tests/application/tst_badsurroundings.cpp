// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "application/Desktop.h"
#include "application/LaunchedApplication.h"
#include "application/TrayReader.h"
#include "platform/Defaults.h"
#include "support/Surroundings.h"

#include <csignal>

#include <sched.h>
#include <sys/mount.h>

using namespace tidewick;
namespace fs = std::filesystem;

namespace {

/// A volume of 64 KiB, for this process and those it starts.
class SmallVolume
{
public:
    explicit SmallVolume(fs::path path) : m_path(std::move(path))
    {
        fs::create_directories(m_path);
        if (::mount("tmpfs", m_path.c_str(), "tmpfs", 0, "size=64k") != 0)
            qFatal("%s cannot be mounted", m_path.c_str());
    }
    SmallVolume(const SmallVolume &) = delete;
    SmallVolume &operator=(const SmallVolume &) = delete;
    ~SmallVolume() { ::umount2(m_path.c_str(), MNT_DETACH); }

    const fs::path &path() const { return m_path; }

    void makeReadOnly() const
    {
        if (::mount(nullptr, m_path.c_str(), nullptr, MS_REMOUNT | MS_RDONLY, nullptr) != 0)
            qFatal("%s cannot be made read-only", m_path.c_str());
    }

private:
    fs::path m_path;
};

} // namespace

/// Places and machines that are not as they should be: the user gets a clear word, and nothing is
/// lost.
class TestBadSurroundings : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void strangePaths_data();
    void strangePaths();
    void fileInPlaceOfTheFolder();
    void fullDisk();
    void readOnlyVolume_data();
    void readOnlyVolume();
    void noProgramsToOpenAnything();

private:
    std::unique_ptr<LaunchedApplication> launch(const fs::path &dataHome,
                                                ProcessEnvironment variables = {});
    /// Waits for the menu's title and gives the line below it.
    QString detailUnder(const QString &title);

    TestBundle m_bundle;
    TemporaryFolder m_folder;
    std::unique_ptr<SessionBus> m_bus;
    std::unique_ptr<XServer> m_display;
    std::unique_ptr<DesktopPanel> m_panel;
    std::unique_ptr<TrayReader> m_reader;
};

void TestBadSurroundings::init()
{
    m_bus = std::make_unique<SessionBus>();
    m_display = std::make_unique<XServer>();
    m_panel = std::make_unique<DesktopPanel>();
    QVERIFY(DesktopPanel::waitForHost(*m_bus));
    m_reader = std::make_unique<TrayReader>(m_bus->connection());
}

void TestBadSurroundings::cleanup()
{
    m_reader.reset();
    m_panel.reset();
    m_display.reset();
    m_bus.reset();
    Defaults::standard().remove(QStringLiteral("diskGuardFreeGB"));
}

std::unique_ptr<LaunchedApplication> TestBadSurroundings::launch(const fs::path &dataHome,
                                                                 ProcessEnvironment variables)
{
    variables["XDG_DATA_HOME"] = dataHome.string();
    return std::make_unique<LaunchedApplication>(m_bundle, "speed=50 state=full", variables);
}

QString TestBadSurroundings::detailUnder(const QString &title)
{
    QList<MenuEntry> menu;
    const bool found = waitUntil([&] {
        menu = m_reader->findItem() ? m_reader->menu() : QList<MenuEntry>();
        return menu.size() > 1 && menu[0].text == title;
    });
    return found ? menu[1].text : QString();
}

void TestBadSurroundings::strangePaths_data()
{
    QTest::addColumn<QString>("name");
    for (const char *name :
         {"with spaces", "quotes \" and ' here", "100%1%s%25", "Ünïcödé 漢字 👩‍🚀",
          "a&b_c", "<b>bold</b>", "back\\slash", "#hash [section]"})
        QTest::newRow(name) << QString::fromUtf8(name);
}

void TestBadSurroundings::strangePaths()
{
    QFETCH(QString, name);
    const fs::path home = m_folder.path() / name.toStdString();
    const auto application = launch(home);
    QCOMPARE(detailUnder(QStringLiteral("Full")), QStringLiteral("Following mainnet"));
    QVERIFY(fs::exists(home / "Tidewick" / "debug.log"));
    QVERIFY(fs::exists(home / "Tidewick" / "db"));
    QVERIFY(application->endsWell(SIGTERM));
}

void TestBadSurroundings::fileInPlaceOfTheFolder()
{
    const fs::path home = m_folder.path() / "home";
    fs::create_directories(home);
    writeFile(home / "Tidewick", "precious");
    const auto application = launch(home);
    const QString detail = detailUnder(QStringLiteral("Error"));
    QVERIFY2(detail.startsWith(QLatin1String("Could not start the node: ")), qPrintable(detail));
    QVERIFY2(detail.endsWith(QLatin1String("Not a directory"))
                 || detail.endsWith(QLatin1String("File exists")),
             qPrintable(detail));
    QVERIFY(application->endsWell(SIGTERM));
    QCOMPARE(contentOf(home / "Tidewick"), "precious");
}

void TestBadSurroundings::fullDisk()
{
    const SmallVolume volume(m_folder.path() / "volume");
    Defaults::standard().setInteger(QStringLiteral("diskGuardFreeGB"), 0);
    writeFile(volume.path() / "other data", QByteArray(60'000, 'x'));
    const auto application = launch(volume.path());
    QVERIFY(!detailUnder(QStringLiteral("Error")).isEmpty());
    const QString text = m_reader->toolTip(); // the menu's row has no room for all of it
    QVERIFY2(text.endsWith(QLatin1String("No space left on device")), qPrintable(text));

    // With room again, the next start works without any hand.
    fs::remove(volume.path() / "other data");
    QVERIFY(m_reader->click(QStringLiteral("Start Node")));
    QVERIFY(waitUntil([&] { return fs::exists(volume.path() / "Tidewick" / "debug.log"); }));
    QVERIFY(contentOf(volume.path() / "Tidewick" / "xrpld.cfg").contains("[server]"));
    QVERIFY(application->endsWell(SIGTERM));
}

void TestBadSurroundings::readOnlyVolume_data()
{
    QTest::addColumn<bool>("isFolderThere");
    QTest::newRow("without the folder") << false;
    QTest::newRow("with the folder") << true;
}

void TestBadSurroundings::readOnlyVolume()
{
    QFETCH(bool, isFolderThere);
    const SmallVolume volume(m_folder.path() / "read-only");
    if (isFolderThere)
        fs::create_directory(volume.path() / "Tidewick");
    volume.makeReadOnly();
    Defaults::standard().setInteger(QStringLiteral("diskGuardFreeGB"), 0);
    const auto application = launch(volume.path());
    QVERIFY(!detailUnder(QStringLiteral("Error")).isEmpty());
    const QString text = m_reader->toolTip();
    QVERIFY2(text.endsWith(QLatin1String("Read-only file system")), qPrintable(text));
    QVERIFY(application->endsWell(SIGTERM));
}

void TestBadSurroundings::noProgramsToOpenAnything()
{
    const auto application =
        launch(m_folder.path() / "plain", {{"PATH", m_folder.path().string()}});
    QCOMPARE(detailUnder(QStringLiteral("Full")), QStringLiteral("Following mainnet"));
    for (const char *command : {"Open Data Folder", "Open Log"})
        QVERIFY(m_reader->click(QString::fromLatin1(command)));
    QVERIFY(waitUntil([&] {
        return application->output().contains("nothing on this desktop opens file://")
               && application->output().contains("debug.log");
    }));
    QVERIFY(application->endsWell(SIGTERM));
}

int main(int argc, char *argv[])
{
    enterPrivateLoopback();
    // Volumes mounted here are nobody else's.
    if (::unshare(CLONE_NEWNS) != 0
        || ::mount("none", "/", nullptr, MS_REC | MS_PRIVATE, nullptr) != 0)
        qFatal("No name space to mount in");
    const TestHome home;
    const QCoreApplication application(argc, argv);
    TestBadSurroundings test;
    return QTest::qExec(&test, argc, argv);
}
#include "tst_badsurroundings.moc"
