// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "application/Desktop.h"
#include "application/LaunchedApplication.h"
#include "application/TrayReader.h"
#include "support/Surroundings.h"

#include <csignal>

using namespace tidewick;
namespace fs = std::filesystem;

/// Tests unsuitable folders and machines: the user gets a clear message, and no data is lost.
class TestBadSurroundings : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void strangePaths_data();
    void strangePaths();
    void pathThatTheNodeMisreads();
    void fileInPlaceOfTheFolder();
    void noProgramsToOpenAnything();

private:
    std::unique_ptr<LaunchedApplication> launch(const fs::path &dataHome,
                                                ProcessEnvironment variables = {});
    /// Waits for this title in the menu and returns the line below it.
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
          "a&b_c", "<b>bold</b>", "back\\slash", "[section]"})
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

/// A node would treat the rest of such a path as a comment and keep its store elsewhere.
void TestBadSurroundings::pathThatTheNodeMisreads()
{
    const fs::path home = m_folder.path() / "number #1";
    const auto application = launch(home);
    QVERIFY(!detailUnder(QStringLiteral("Error")).isEmpty());
    const QString text = m_reader->toolTip();
    QVERIFY2(text.contains(QLatin1String("Could not start the node: "))
                 && text.contains(QLatin1String("the node treats a \"#\" in a path")),
             qPrintable(text));
    QVERIFY(!fs::exists(home) && !fs::exists(m_folder.path() / "number"));
    QVERIFY(application->endsWell(SIGTERM));
}

void TestBadSurroundings::fileInPlaceOfTheFolder()
{
    const fs::path home = m_folder.path() / "home";
    fs::create_directories(home);
    writeFile(home / "Tidewick", "precious");
    const auto application = launch(home);
    QVERIFY(!detailUnder(QStringLiteral("Error")).isEmpty());
    const QString text = m_reader->toolTip(); // the menu row elides it
    QVERIFY2(text.contains(QLatin1String("Could not start the node: ")), qPrintable(text));
    QVERIFY2(text.endsWith(QLatin1String("Not a directory")), qPrintable(text));
    QCOMPARE(contentOf(home / "Tidewick"), "precious");

    fs::remove(home / "Tidewick");
    QVERIFY(m_reader->click(QStringLiteral("Start Node")));
    QCOMPARE(detailUnder(QStringLiteral("Full")), QStringLiteral("Following mainnet"));
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

TIDEWICK_LOOPBACK_TEST_MAIN(TestBadSurroundings)
#include "tst_badsurroundings.moc"
