// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "application/Desktop.h"
#include "application/LaunchedApplication.h"
#include "application/TrayReader.h"
#include "application/XWindows.h"
#include "support/Processes.h"
#include "support/Surroundings.h"

#include <QDBusMessage>

#include <csignal>

using namespace tidewick;

/// Tests the application as a process: launched, launched again, and terminated.
class TestLifecycle : public QObject
{
    Q_OBJECT

private slots:
    void cleanup();

    void endsOnSignals_data();
    void endsOnSignals();
    void endsWithoutANode();
    void secondSignalChangesNothing();
    void quitsFromTheMenu();
    void leavesNoNodeWhenKilled_data();
    void leavesNoNodeWhenKilled();
    void endsAfterItsNodeWhenTheDisplayGoes();
    void nodeFinishesWhenKilledWhileStopping();
    void launchWhileQuitting();

    void secondLaunchOpensTheLedger();
    void secondLaunchOpensThePanelWithoutATray();
    void secondLaunchWithoutABus();
    void secondLaunchWhileTheFirstHangs();
    void desktopActions();

    void panelWithoutATray();
    void panelWhenTheBusDies();

private:
    std::unique_ptr<LaunchedApplication> launch(const QByteArray &scenario,
                                                const ProcessEnvironment &variables = {});
    static bool isInTray(TrayReader &reader);

    TestBundle m_bundle;
};

void TestLifecycle::cleanup()
{
    std::filesystem::remove_all(applicationData());
}

std::unique_ptr<LaunchedApplication> TestLifecycle::launch(const QByteArray &scenario,
                                                           const ProcessEnvironment &variables)
{
    return std::make_unique<LaunchedApplication>(m_bundle, scenario, variables);
}

bool TestLifecycle::isInTray(TrayReader &reader)
{
    return waitUntil([&] { return reader.findItem() && !reader.menu().isEmpty(); });
}

void TestLifecycle::endsOnSignals_data()
{
    QTest::addColumn<int>("signalNumber");
    QTest::addColumn<QByteArray>("scenario");
    QTest::addColumn<QByteArray>("awaited");
    for (const auto &[name, number] :
         {std::pair("TERM", SIGTERM), std::pair("INT", SIGINT), std::pair("HUP", SIGHUP)}) {
        QTest::addRow("%s while starting", name)
            << number << QByteArray("listen=no") << QByteArray("Application starting");
        QTest::addRow("%s while syncing", name)
            << number << QByteArray("speed=20 state=syncing") << QByteArray("server_info");
        QTest::addRow("%s in sync", name)
            << number << QByteArray("speed=20 state=full") << QByteArray("server_info");
    }
}

void TestLifecycle::endsOnSignals()
{
    QFETCH(int, signalNumber);
    QFETCH(QByteArray, scenario);
    QFETCH(QByteArray, awaited);
    const SessionBus bus;
    const XServer display;
    const auto application = launch(scenario);
    QVERIFY(waitUntil([&] { return LaunchedApplication::noted(awaited) > 0; }));
    const auto node = application->node();
    QVERIFY(node);
    QVERIFY2(application->endsWell(signalNumber), application->output());
    QVERIFY(!runs(*node));
    QVERIFY(LaunchedApplication::debugLog().contains("Done."));
    QCOMPARE(application->output(), QByteArray());
}

void TestLifecycle::endsWithoutANode()
{
    const SessionBus bus;
    const XServer display;
    const auto application = launch("listen=no");
    QVERIFY(waitUntil([&] { return LaunchedApplication::noted("Application starting") > 0; }));
    ::kill(*application->node(), SIGKILL);
    QVERIFY(waitUntil([&] { return !application->node(); }));
    QVERIFY(application->endsWell(SIGTERM));
}

void TestLifecycle::secondSignalChangesNothing()
{
    const SessionBus bus;
    const XServer display;
    const auto application = launch("listen=no stop-delay=1");
    QVERIFY(waitUntil([&] { return LaunchedApplication::noted("Application starting") > 0; }));
    application->process().send(SIGTERM);
    QVERIFY(waitUntil([&] { return LaunchedApplication::noted("signal 15") > 0; }));
    application->process().send(SIGINT);
    QVERIFY(application->endsWell(SIGTERM));
    QCOMPARE(LaunchedApplication::noted("signal 15"), 1);
    QVERIFY(LaunchedApplication::debugLog().contains("Done."));
}

void TestLifecycle::quitsFromTheMenu()
{
    const SessionBus bus;
    const XServer display;
    const DesktopPanel panel;
    TrayReader reader(bus.connection());
    const auto application = launch("speed=20 state=full");
    QVERIFY(isInTray(reader));
    QVERIFY(waitUntil([&] { return reader.menu().at(0).text == QLatin1String("Full"); }));
    QVERIFY(reader.click(QStringLiteral("Quit")));
    QVERIFY(application->process().waitForEnd());
    QCOMPARE(application->process().ending()->status, 0);
    QCOMPARE(LaunchedApplication::noted("RPCHandler:NFO stop"), 1);
}

void TestLifecycle::leavesNoNodeWhenKilled_data()
{
    QTest::addColumn<bool>("launched");
    QTest::addColumn<bool>("application");
    QTest::addRow("the application") << false << true;
    QTest::addRow("the launched process") << true << false;
    QTest::addRow("both") << true << true;
}

/// Whichever process is killed, the node is told once, so that it closes its store: a second signal
/// would end it at once.
void TestLifecycle::leavesNoNodeWhenKilled()
{
    QFETCH(bool, launched);
    QFETCH(bool, application);
    const SessionBus bus;
    const XServer display;
    const auto tidewick = launch("speed=20 state=full stop-delay=1");
    QVERIFY(waitUntil([&] { return LaunchedApplication::noted("server_info") > 1; }));
    const pid_t node = *tidewick->node();
    if (application)
        tidewick->signalApplication(SIGKILL);
    if (launched)
        tidewick->process().send(SIGKILL);
    QVERIFY(tidewick->process().waitForEnd());
    QVERIFY(tidewick->process().ending()->signaled);
    QCOMPARE(tidewick->process().ending()->status, SIGKILL);
    QCOMPARE(runs(node), launched);
    QVERIFY(waitUntil([&] { return !runs(node); }));
    QVERIFY2(LaunchedApplication::debugLog().contains("Done."), LaunchedApplication::debugLog());
    QCOMPARE(LaunchedApplication::noted("signal 15"), application ? 1 : 0);
}

/// The launched process remains until the node has closed its store, and reports no failure.
void TestLifecycle::endsAfterItsNodeWhenTheDisplayGoes()
{
    const SessionBus bus;
    auto display = std::make_unique<XServer>();
    const auto application = launch("speed=20 state=full stop-delay=2");
    QVERIFY(waitUntil([&] { return LaunchedApplication::noted("server_info") > 1; }));
    const pid_t node = *application->node();
    display->process().send(SIGKILL);
    QVERIFY(application->process().waitForEnd());
    QVERIFY(!runs(node));
    QVERIFY(LaunchedApplication::debugLog().contains("Done."));
    QVERIFY(!application->process().ending()->signaled);
    QCOMPARE(application->process().ending()->status, 0);
    QVERIFY2(
        application->output().contains("The display has gone. Tidewick stops its node and ends.\n"),
        application->output());
}

void TestLifecycle::secondLaunchOpensTheLedger()
{
    const SessionBus bus;
    const XServer display;
    const DesktopPanel panel;
    TrayReader reader(bus.connection());
    const auto first = launch("speed=20 state=full");
    QVERIFY(isInTray(reader));
    QVERIFY(!isWindowShown(QStringLiteral("Live Ledger")));

    const auto second = launch("speed=20 state=full");
    QVERIFY(second->process().waitForEnd());
    QCOMPARE(second->process().ending()->status, 0);
    QVERIFY(!second->process().ending()->signaled);
    QVERIFY(waitUntil([] { return isWindowShown(QStringLiteral("Live Ledger")); }));
    QVERIFY(first->endsWell(SIGTERM));
}

void TestLifecycle::secondLaunchOpensThePanelWithoutATray()
{
    const SessionBus bus;
    const XServer display;
    const auto first = launch("speed=20 state=full");
    QVERIFY(waitUntil([&] { return first->node().has_value(); }));
    const auto second = launch("speed=20 state=full");
    QVERIFY(second->process().waitForEnd());
    QCOMPARE(second->process().ending()->status, 0);
    QVERIFY(waitUntil([] { return isWindowShown(QStringLiteral("Tidewick")); }));
    QVERIFY(!isWindowShown(QStringLiteral("Live Ledger")));
    QVERIFY(first->endsWell(SIGTERM));
}

void TestLifecycle::secondLaunchWithoutABus()
{
    const TemporaryFolder runtime;
    const ProcessEnvironment variables{{"XDG_RUNTIME_DIR", runtime.path().string()}};
    const XServer display;
    const auto first = launch("speed=20 state=full", variables);
    QVERIFY(waitUntil([&] { return first->node().has_value(); }));
    const auto second = launch("speed=20 state=full", variables);
    QVERIFY(second->process().waitForEnd());
    QCOMPARE(second->process().ending()->status, 1);
    QCOMPARE(second->output(), "Tidewick is already running, as process "
                                   + QByteArray::number(first->application())
                                   + ", and cannot be reached from here.\n");
    QVERIFY(first->endsWell(SIGTERM));
}

void TestLifecycle::secondLaunchWhileTheFirstHangs()
{
    const SessionBus bus;
    const XServer display;
    const auto first = launch("speed=20 state=full");
    QVERIFY(waitUntil([&] { return first->node().has_value(); }));
    first->signalApplication(SIGSTOP);
    const auto second = launch("speed=20 state=full");
    QVERIFY(second->process().waitForEnd());
    QCOMPARE(second->process().ending()->status, 1);
    QVERIFY(
        second->output().startsWith("Tidewick is already running, but did not come to the front"));
    first->signalApplication(SIGCONT);
    QVERIFY(first->endsWell(SIGTERM));
}

void TestLifecycle::desktopActions()
{
    const SessionBus bus;
    const XServer display;
    const auto application = launch("speed=20 state=full");
    QVERIFY(waitUntil([&] { return application->node().has_value(); }));
    const auto act = [&](const char *action) {
        QDBusMessage call = QDBusMessage::createMethodCall(
            QStringLiteral("org.tidewick.Tidewick"), QStringLiteral("/org/tidewick/Tidewick"),
            QStringLiteral("org.freedesktop.Application"), QStringLiteral("ActivateAction"));
        call.setArguments({QString::fromLatin1(action), QVariantList(), QVariantMap()});
        return bus.connection().call(call).type() == QDBusMessage::ReplyMessage;
    };
    QVERIFY(act("live-ledger"));
    QVERIFY(waitUntil([] { return isWindowShown(QStringLiteral("Live Ledger")); }));
    QVERIFY(act("settings"));
    QVERIFY(waitUntil([] { return isWindowShown(QStringLiteral("Tidewick Settings")); }));
    QVERIFY(act("no such action"));
    QVERIFY(act("quit"));
    QVERIFY(application->process().waitForEnd());
    QCOMPARE(application->process().ending()->status, 0);
}

void TestLifecycle::panelWithoutATray()
{
    const SessionBus bus;
    const XServer display;
    const auto application = launch("speed=20 state=full");
    QVERIFY(waitUntil([] { return isWindowShown(QStringLiteral("Tidewick")); }));
    {
        const DesktopPanel panel;
        TrayReader reader(bus.connection());
        QVERIFY(isInTray(reader));
        QVERIFY(waitUntil([] { return !isWindowShown(QStringLiteral("Tidewick")); }));
    }
    QVERIFY(waitUntil([] { return isWindowShown(QStringLiteral("Tidewick")); }));
    QVERIFY(application->endsWell(SIGTERM));
}

void TestLifecycle::nodeFinishesWhenKilledWhileStopping()
{
    const SessionBus bus;
    const XServer display;
    const auto application = launch("listen=no stop-delay=2");
    QVERIFY(waitUntil([&] { return LaunchedApplication::noted("Application starting") > 0; }));
    const pid_t node = *application->node();
    application->process().send(SIGTERM);
    QVERIFY(waitUntil([&] { return LaunchedApplication::noted("signal 15") > 0; }));
    application->signalApplication(SIGKILL);
    QVERIFY(application->process().waitForEnd());
    QVERIFY(waitUntil([&] { return !runs(node); }));
    QVERIFY2(LaunchedApplication::debugLog().contains("Done."), LaunchedApplication::debugLog());
}

void TestLifecycle::launchWhileQuitting()
{
    const SessionBus bus;
    const XServer display;
    const auto first = launch("listen=no sigterm=ignore");
    QVERIFY(waitUntil([&] { return LaunchedApplication::noted("Application starting") > 0; }));
    const pid_t node = *first->node();
    first->process().send(SIGTERM);
    QVERIFY(waitUntil([&] { return LaunchedApplication::noted("signal 15") > 0; }));
    const auto second = launch("listen=no");
    QVERIFY(second->process().waitForEnd());
    QCOMPARE(second->output(),
             "Tidewick is already running, but did not come to the front: it is quitting\n");
    QCOMPARE(second->process().ending()->status, 1);
    ::kill(node, SIGKILL);
    QVERIFY(first->process().waitForEnd());
    QCOMPARE(first->process().ending()->status, 0);
}

void TestLifecycle::panelWhenTheBusDies()
{
    SessionBus bus;
    const XServer display;
    const DesktopPanel panel;
    TrayReader reader(bus.connection());
    const auto application = launch("speed=20 state=full");
    QVERIFY(isInTray(reader));
    bus.stop();
    QVERIFY(waitUntil([] { return isWindowShown(QStringLiteral("Tidewick")); }));
    QVERIFY(application->endsWell(SIGTERM));
}

TIDEWICK_LOOPBACK_TEST_MAIN(TestLifecycle)
#include "tst_lifecycle.moc"
