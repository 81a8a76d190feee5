// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "application/Desktop.h"
#include "application/LaunchedApplication.h"
#include "package/Installation.h"
#include "package/UserManager.h"
#include "support/Processes.h"
#include "support/Surroundings.h"

#include <QDBusConnection>
#include <QDBusConnectionInterface>

#include <csignal>
#include <optional>

using namespace tidewick;

namespace fs = std::filesystem;

/// Tests Tidewick under a real systemd user manager, started in each of the three ways the manager
/// supports, and installed to a folder whose name requires all kinds of quoting. In each case only
/// Tidewick tells the node to stop, and the node has time to close its store.
class TestUserUnits : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void cleanup();

    void serviceIsEnabledAndStopped();
    void serviceRestartsAfterAFailure();
    void serviceFailsIfAnotherRuns();
    void autostartedHasTimeToStop();
    void outlivesTheBusThatStartedIt();
    void endsWithTheManager();
    void logout_data();
    void logout();

private:
    ChildSpec inScope(const fs::path &program) const;
    bool startsNode(const char *unit) const;
    bool isStopped(const char *unit) const;

    const Installation m_installation{"a b'c%d \"$e\" ${f} #g;h ü"};
    /// Without the characters that systemd cannot read in desktop entries.
    const Installation m_autostarted{"a b'c%d #e;f ü"};
    std::optional<UserManager> m_manager;
};

namespace {

constexpr const char *service = "tidewick.service";
constexpr const char *autostarted = "app-org.tidewick.Tidewick@autostart.service";
constexpr const char *activated = "app-org.tidewick.Tidewick.service";
constexpr const char *usualCourse = "speed=20 state=full";
const QString busName = QStringLiteral("org.tidewick.Tidewick");

fs::path scenario()
{
    return fs::path(qgetenv("TMPDIR").toStdString()) / "scenario";
}

/// With the second request, Tidewick has the answer to the first; before that it would stop the
/// node with a signal.
bool nodeHasAnswered()
{
    return waitUntil([] { return LaunchedApplication::noted("server_info") >= 2; });
}

/// Stopped by a command, not by a signal.
bool nodeHasClosed()
{
    return LaunchedApplication::noted("Done.") == 1
           && LaunchedApplication::noted("RPCHandler:NFO stop") == 1
           && LaunchedApplication::noted("signal 15") == 0;
}

void install(const fs::path &from, const fs::path &to)
{
    fs::create_directories(to.parent_path());
    fs::copy_file(from, to);
}

/// Installs a session bus that lets the manager start services. Installing the package with these
/// units would change what a machine boots with.
void installBus()
{
    writeFile(UserManager::units() / "dbus.socket", "[Socket]\nListenStream=%t/bus\n");
    writeFile(UserManager::units() / "dbus.service",
              "[Service]\nType=notify\n"
              "ExecStart=dbus-daemon --session --address=systemd: --nofork --nopidfile "
              "--systemd-activation\n");
}

} // namespace

void TestUserUnits::initTestCase()
{
    m_installation.useSimulatedNode();
    m_autostarted.useSimulatedNode();
    const fs::path config = qgetenv("XDG_CONFIG_HOME").toStdString();
    const fs::path data = qgetenv("XDG_DATA_HOME").toStdString();
    const fs::path from = m_installation.prefix() / "lib/systemd/user";
    for (const char *unit : {service, activated})
        install(from / unit, UserManager::units() / unit);
    const fs::path ownWords = "app-org.tidewick.Tidewick@.service.d/tidewick.conf";
    install(from / ownWords, UserManager::units() / ownWords);
    install(m_autostarted.prefix() / "share/tidewick/autostart/org.tidewick.Tidewick.desktop",
            config / "autostart/org.tidewick.Tidewick.desktop");
    const fs::path busService = "dbus-1/services/org.tidewick.Tidewick.service";
    install(m_installation.prefix() / "share" / busService, data / busService);
    installBus();
}

void TestUserUnits::init()
{
    // In a file, so that a test can change the scenario of its node later.
    writeFile(scenario(), usualCourse);
    qputenv("TIDEWICK_SIMNODE", '@' + QByteArray::fromStdString(scenario().string()));
    m_manager.emplace();
    QVERIFY(m_manager->comesUp());
    if (m_manager->isRefused())
        QSKIP("No service manager can run here: it requires root and a control group");
}

void TestUserUnits::cleanup()
{
    m_manager.reset();
    fs::remove_all(applicationData());
}

/// Runs a program in a scope of its own, as desktops and terminals do.
ChildSpec TestUserUnits::inScope(const fs::path &program) const
{
    ChildSpec spec;
    spec.executable = "/usr/bin/systemd-run";
    spec.arguments = {"--user", "--scope", "--quiet", program};
    for (const auto &[name, value] : m_manager->environment())
        spec.environment[name] = value;
    return spec;
}

bool TestUserUnits::startsNode(const char *unit) const
{
    return m_manager->control({"start", unit}) && nodeHasAnswered();
}

bool TestUserUnits::isStopped(const char *unit) const
{
    return m_manager->property(unit, "ActiveState") == "inactive"
           && m_manager->property(unit, "Result") == "success";
}

void TestUserUnits::serviceIsEnabledAndStopped()
{
    QVERIFY(m_manager->control({"enable", "--now", service}));
    QVERIFY(fs::is_symlink(UserManager::units() / "default.target.wants" / service));
    QVERIFY(startsNode(service));
    QVERIFY(m_manager->control({"disable", "--now", service}));
    QVERIFY(isStopped(service));
    QVERIFY(nodeHasClosed());
}

void TestUserUnits::serviceRestartsAfterAFailure()
{
    QVERIFY(startsNode(service));
    const std::vector<pid_t> application =
        childrenOf(m_manager->property(service, "MainPID").toInt());
    QCOMPARE(application.size(), std::size_t(1));
    ::kill(application.front(), SIGKILL);
    QVERIFY(waitUntil([&] { return m_manager->property(service, "SubState") == "auto-restart"; }));
    QVERIFY(waitUntil([] { return LaunchedApplication::noted("Done.") == 1; }));
    QCOMPARE(LaunchedApplication::noted("signal 15"), 1);
    QVERIFY(m_manager->control({"stop", service}));
}

void TestUserUnits::serviceFailsIfAnotherRuns()
{
    QVERIFY(startsNode(activated));
    QVERIFY(m_manager->control({"start", service}));
    // A service that is due for a restart would not enter this state.
    QVERIFY(waitUntil([&] { return m_manager->property(service, "ActiveState") == "failed"; }));
    QCOMPARE(m_manager->property(activated, "ActiveState"), QByteArray("active"));
    QCOMPARE(LaunchedApplication::noted("Application starting"), 1);
}

/// Without the unit's drop-in, the manager kills autostarted programs after 5 s.
void TestUserUnits::autostartedHasTimeToStop()
{
    writeFile(scenario(), QByteArray(usualCourse) + " stop-delay=7");
    QVERIFY(startsNode(autostarted));
    QVERIFY(m_manager->control({"stop", autostarted}));
    QVERIFY(isStopped(autostarted));
    QVERIFY(nodeHasClosed());
}

void TestUserUnits::outlivesTheBusThatStartedIt()
{
    QVERIFY(m_manager->control({"start", "dbus.socket"}));
    {
        const QDBusConnection bus =
            QDBusConnection::connectToBus(m_manager->busAddress(), QStringLiteral("units"));
        QVERIFY(bus.isConnected());
        QVERIFY(bus.interface()->startService(busName).isValid());
        QDBusConnection::disconnectFromBus(QStringLiteral("units"));
    }
    QCOMPARE(m_manager->property(activated, "ActiveState"), QByteArray("active"));
    QVERIFY(nodeHasAnswered());
    QVERIFY(m_manager->control({"stop", "dbus.service", "dbus.socket"}));
    const qsizetype polls = LaunchedApplication::noted("server_info");
    QVERIFY(waitUntil([&] { return LaunchedApplication::noted("server_info") >= polls + 2; }));
    QVERIFY(m_manager->control({"stop", activated}));
    QVERIFY(isStopped(activated));
    QVERIFY(nodeHasClosed());
}

void TestUserUnits::endsWithTheManager()
{
    QVERIFY(startsNode(activated));
    m_manager->exit();
    QVERIFY2(nodeHasClosed(), LaunchedApplication::debugLog().right(1000));
}

void TestUserUnits::logout_data()
{
    QTest::addColumn<QByteArray>("unit");
    QTest::addColumn<bool>("displayGoes");
    for (const char *unit : {activated, autostarted}) {
        QTest::addRow("%s", unit) << QByteArray(unit) << false;
        QTest::addRow("%s, without its display", unit) << QByteArray(unit) << true;
    }
    // What desktops and terminals create for the programs they launch.
    QTest::addRow("a scope") << QByteArray() << false;
    QTest::addRow("a scope, without its display") << QByteArray() << true;
}

void TestUserUnits::logout()
{
    QFETCH(QByteArray, unit);
    QFETCH(bool, displayGoes);
    writeFile(scenario(), QByteArray(usualCourse) + " stop-delay=2");
    auto display = std::make_unique<XServer>();
    QVERIFY(m_manager->control({"set-environment", "DISPLAY=" + qgetenv("DISPLAY").toStdString()}));
    QVERIFY(m_manager->control({"start", "dbus.socket"}));
    std::unique_ptr<Beside> scope;
    if (unit.isEmpty())
        scope = std::make_unique<Beside>(inScope(m_installation.program()));
    else
        QVERIFY(m_manager->control({"start", unit.toStdString()}));
    QVERIFY(nodeHasAnswered());
    if (displayGoes) {
        display.reset();
        QVERIFY(waitUntil([] { return LaunchedApplication::noted("signal 15") > 0; }));
    }
    m_manager->exit();
    const QByteArray log = LaunchedApplication::debugLog();
    QVERIFY2(log.contains("Done."), log.right(1000));
    QCOMPARE(log.count("signal 15") + log.count("RPCHandler:NFO stop"), 1);
    if (scope) {
        QVERIFY(scope->waitForEnd());
        QCOMPARE(scope->ending()->status, 0);
        QVERIFY(!scope->ending()->signaled);
    }
}

TIDEWICK_LOOPBACK_TEST_MAIN(TestUserUnits)
#include "tst_userunits.moc"
