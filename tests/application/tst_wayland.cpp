// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "application/LaunchedApplication.h"
#include "application/TrayReader.h"
#include "application/WaylandDesktop.h"
#include "support/Surroundings.h"

#include <QDBusMessage>
#include <QJsonDocument>
#include <QJsonObject>
#include <QStandardPaths>

#include <csignal>

using namespace tidewick;

namespace fs = std::filesystem;

/// Tests the application on a real Wayland compositor, with the tray of a real panel.
class TestWayland : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void cleanup();

    void copiesFromTheTray();
    void offersTheTextWhereItCannotCopy();
    void passesOnTheLaunchersToken_data();
    void passesOnTheLaunchersToken();
    void closedPanelIsMinimised();
    void clickShowsThePanel();
    void endsAfterItsNodeWhenTheCompositorGoes();

private:
    void launch(const QByteArray &scenario = "speed=20 state=full",
                const ProcessEnvironment &variables = {});
    bool isFull();

    const TestBundle m_bundle;
    std::unique_ptr<SessionBus> m_bus;
    std::unique_ptr<WaylandDesktop> m_desktop;
    std::unique_ptr<TrayReader> m_reader;
    std::unique_ptr<LaunchedApplication> m_application;
};

namespace {

constexpr const char *copyCommand = "Copy server_info JSON";

bool isServerInfo(const QByteArray &text)
{
    return QJsonDocument::fromJson(text).object()[QLatin1String("server_state")].toString()
           == QLatin1String("full");
}

} // namespace

void TestWayland::initTestCase()
{
    if (!WaylandDesktop::canRun())
        QSKIP("The compositor cannot run here: root needs a user namespace for it");
}

void TestWayland::init()
{
    m_bus = std::make_unique<SessionBus>();
    m_desktop = std::make_unique<WaylandDesktop>(*m_bus);
    m_reader = std::make_unique<TrayReader>(m_bus->connection());
}

void TestWayland::cleanup()
{
    m_application.reset();
    m_reader.reset();
    m_desktop.reset();
    m_bus.reset();
    fs::remove_all(applicationData());
}

void TestWayland::launch(const QByteArray &scenario, const ProcessEnvironment &variables)
{
    m_application = std::make_unique<LaunchedApplication>(m_bundle, scenario, variables);
}

bool TestWayland::isFull()
{
    return waitUntil([&] {
        return m_reader->findItem() && m_reader->menu().value(0).text == QLatin1String("Full");
    });
}

void TestWayland::copiesFromTheTray()
{
    launch();
    QVERIFY(isFull());
    QVERIFY(!isServerInfo(WaylandDesktop::clipboard()));
    QVERIFY(m_reader->click(QString::fromLatin1(copyCommand)));
    QVERIFY(waitUntil([] { return isServerInfo(WaylandDesktop::clipboard()); }));
    QVERIFY(m_application->endsWell(SIGTERM));
    // The text outlives the program.
    QVERIFY(isServerInfo(WaylandDesktop::clipboard()));
}

/// Without the program for the protocol that needs no focus, as with a compositor that does not
/// offer that protocol.
void TestWayland::offersTheTextWhereItCannotCopy()
{
    launch("speed=20 state=full", {{"PATH", "/no/such/folder"}});
    QVERIFY(isFull());
    QVERIFY(m_reader->click(QString::fromLatin1(copyCommand)));
    QVERIFY(waitUntil([] { return WaylandDesktop::hasFocus("Tidewick"); }));
    QVERIFY(!isServerInfo(WaylandDesktop::clipboard()));
    // The program learns of the focus a little later, and ignores keys before that.
    QVERIFY(waitUntil([] {
        return WaylandDesktop::press("Return") && isServerInfo(WaylandDesktop::clipboard());
    }));
    QVERIFY(waitUntil([] { return !WaylandDesktop::hasWindow("Tidewick"); }));
    QVERIFY(m_application->endsWell(SIGTERM));
}

void TestWayland::passesOnTheLaunchersToken_data()
{
    QTest::addColumn<QByteArray>("variable");
    QTest::addRow("of Wayland") << QByteArray("XDG_ACTIVATION_TOKEN");
    QTest::addRow("of GLib before 2.76") << QByteArray("DESKTOP_STARTUP_ID");
}

/// A compositor that lets only the user choose the focus lets a launcher pass it on with a token.
void TestWayland::passesOnTheLaunchersToken()
{
    QFETCH(QByteArray, variable);
    launch("speed=20 state=full", {{"WAYLAND_DEBUG", "client"}});
    QVERIFY(isFull());
    LaunchedApplication second(m_bundle, {}, {{variable.toStdString(), "the token"}});
    QVERIFY(second.process().waitForEnd());
    QVERIFY2(second.process().ending()->status == 0, second.output());
    QVERIFY(waitUntil([] { return WaylandDesktop::hasWindow("Live Ledger"); }));
    QVERIFY2(waitUntil([&] {
                 return m_application->output().contains(".activate(\"the token\", wl_surface");
             }),
             m_application->output().right(2000));
    QVERIFY(m_application->endsWell(SIGTERM));
}

/// Where nothing hosts a tray, the panel is the only face of the program.
void TestWayland::closedPanelIsMinimised()
{
    launch("speed=20 state=full",
           {{"DBUS_SESSION_BUS_ADDRESS", "disabled:"}, {"WAYLAND_DEBUG", "client"}});
    QVERIFY(waitUntil([] { return WaylandDesktop::hasWindow("Tidewick"); }));
    QVERIFY(WaylandDesktop::tell("[title=\"^Tidewick$\"] kill"));
    QVERIFY(waitUntil([&] { return m_application->output().contains(".set_minimized()"); }));
    QVERIFY(WaylandDesktop::hasWindow("Tidewick"));
    QVERIFY(m_application->endsWell(SIGTERM));
}

/// Where the program cannot open a menu at its icon. Closed, the panel is gone until the next
/// click.
void TestWayland::clickShowsThePanel()
{
    launch();
    QVERIFY(isFull());
    for (int time = 0; time < 2; ++time) {
        QVERIFY(!WaylandDesktop::hasWindow("Tidewick"));
        QVERIFY(m_reader->activate());
        QVERIFY(waitUntil([] { return WaylandDesktop::hasFocus("Tidewick"); }));
        QVERIFY(WaylandDesktop::tell("[title=\"^Tidewick$\"] kill"));
        QVERIFY(waitUntil([] { return !WaylandDesktop::hasWindow("Tidewick"); }));
    }
    // The icon opens and closes it, too.
    QVERIFY(m_reader->activate());
    QVERIFY(waitUntil([] { return WaylandDesktop::hasFocus("Tidewick"); }));
    QVERIFY(
        waitUntil([&] { return m_reader->activate() && !WaylandDesktop::hasWindow("Tidewick"); }));
    QVERIFY(isFull());
    QVERIFY(m_application->endsWell(SIGTERM));
}

/// Qt exits as soon as the connection breaks.
void TestWayland::endsAfterItsNodeWhenTheCompositorGoes()
{
    launch("speed=20 state=full stop-delay=2");
    QVERIFY(isFull());
    m_desktop->compositor().send(SIGKILL);
    QVERIFY(m_application->process().waitForEnd());
    QVERIFY(LaunchedApplication::debugLog().contains("Done."));
    QCOMPARE(LaunchedApplication::noted("signal 15"), 1);
    QVERIFY(!m_application->process().ending()->signaled);
    QCOMPARE(m_application->process().ending()->status, 0);
}

TIDEWICK_LOOPBACK_TEST_MAIN(TestWayland)
#include "tst_wayland.moc"
