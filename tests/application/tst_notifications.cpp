// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "application/Desktop.h"
#include "application/LaunchedApplication.h"
#include "application/TrayReader.h"
#include "platform/files/Defaults.h"
#include "support/NotificationService.h"
#include "support/Surroundings.h"

#include <csignal>

using namespace tidewick;

/// Tests that a notification appears when the node stops on its own, and only then.
class TestNotifications : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void unexpectedExit();
    void refusedStart();
    void quietExit();
    void noneForARequestedStop();
    void adviceIsShownOnce();
    void exitNotificationIncludesAdvice();
    void missingNodeOffersHelp();

private:
    std::unique_ptr<LaunchedApplication> launch(const QByteArray &scenario);
    QString summary(qsizetype call) const { return m_service->calls.at(call).at(3).toString(); }
    QString body(qsizetype call) const { return m_service->calls.at(call).at(4).toString(); }

    TestBundle m_bundle;
    std::unique_ptr<SessionBus> m_bus;
    std::unique_ptr<XServer> m_display;
    std::unique_ptr<NotificationService> m_service;
};

void TestNotifications::init()
{
    m_bus = std::make_unique<SessionBus>();
    m_display = std::make_unique<XServer>();
    m_service = std::make_unique<NotificationService>(m_bus->connection());
}

void TestNotifications::cleanup()
{
    m_service.reset();
    m_display.reset();
    m_bus.reset();
    std::filesystem::remove_all(applicationData());
    Defaults::standard().remove(QStringLiteral("diskGuardFreeGB"));
}

std::unique_ptr<LaunchedApplication> TestNotifications::launch(const QByteArray &scenario)
{
    return std::make_unique<LaunchedApplication>(m_bundle, scenario);
}

void TestNotifications::unexpectedExit()
{
    const auto application = launch("listen=no");
    QVERIFY(waitUntil([&] { return LaunchedApplication::noted("Application starting") > 0; }));
    ::kill(*application->node(), SIGKILL);
    QVERIFY(waitUntil([&] { return !m_service->calls.isEmpty(); }));
    QCOMPARE(summary(0), QStringLiteral("Node error"));
    QCOMPARE(body(0), QStringLiteral("The node exited unexpectedly (signal 9)."));
    QVERIFY(application->endsWell(SIGTERM));
    QCOMPARE(m_service->calls.size(), 1);
}

void TestNotifications::refusedStart()
{
    Defaults::standard().setInteger(QStringLiteral("diskGuardFreeGB"), 1'000'000);
    const auto application = launch("listen=no");
    QVERIFY(waitUntil([&] { return !m_service->calls.isEmpty(); }));
    QVERIFY(body(0).endsWith(QStringLiteral("the disk guard needs 1000000 GB.")));
    QVERIFY(application->endsWell(SIGTERM));
    QCOMPARE(m_service->calls.size(), 1);
}

/// Even an exit with status 0 is unexpected if nobody asked for it.
void TestNotifications::quietExit()
{
    const auto application = launch("speed=50 state=full exit=0 after=2");
    QVERIFY(waitUntil([&] { return !m_service->calls.isEmpty(); }));
    QCOMPARE(body(0), QStringLiteral("The node exited unexpectedly (exit status 0)."));
    QVERIFY(application->endsWell(SIGTERM));
    QCOMPARE(m_service->calls.size(), 1);
}

void TestNotifications::noneForARequestedStop()
{
    const DesktopPanel panel;
    TrayReader reader(m_bus->connection());
    const auto application = launch("speed=50 state=full");
    const auto titleIs = [&](const char *title) {
        return waitUntil(
            [&] { return reader.findItem() && reader.menu().at(0).text == QLatin1String(title); });
    };
    QVERIFY(titleIs("Full"));
    QVERIFY(reader.click(QStringLiteral("Stop Node")));
    // The menu is read after any notification sent before the menu changed.
    QVERIFY(titleIs("Stopped"));
    QCOMPARE(m_service->asked, 0);
    QCOMPARE(m_service->calls.size(), 0);
    QVERIFY(application->endsWell(SIGTERM));
    QCOMPARE(m_service->calls.size(), 0);
}

void TestNotifications::adviceIsShownOnce()
{
    const DesktopPanel panel;
    TrayReader reader(m_bus->connection());
    const auto application = launch("speed=50 state=connected peers=3 clock-offset=-130");
    QVERIFY(waitUntil([&] { return !m_service->calls.isEmpty(); }));
    QCOMPARE(summary(0), QStringLiteral("Connecting…"));
    const QString text =
        QStringLiteral("This computer's clock is wrong by 2 minutes. Have the system set it over "
                       "the network: a node with a wrong clock cannot follow it.");
    QCOMPARE(body(0), text);
    QVERIFY(waitUntil([&] { return reader.findItem(); }));
    QCOMPARE(reader.toolTip(),
             QStringLiteral("Tidewick: Connecting… · 3 peers (connected) · ") + text);
    for (const MenuEntry &entry : reader.menu())
        QVERIFY(!entry.text.contains(QLatin1String("clock")));
    const qsizetype polls = LaunchedApplication::noted("server_info");
    QVERIFY(waitUntil([&] { return LaunchedApplication::noted("server_info") > polls + 2; }));
    QVERIFY(application->endsWell(SIGTERM));
    QCOMPARE(m_service->calls.size(), 1);
}

void TestNotifications::exitNotificationIncludesAdvice()
{
    std::filesystem::create_directories(applicationData() / "db");
    writeFile(applicationData() / "db" / "nudb.dat", "x");
    const auto application = launch("store=damaged");
    QVERIFY(waitUntil([&] { return !m_service->calls.isEmpty(); }));
    QCOMPARE(summary(0), QStringLiteral("Node error"));
    QCOMPARE(body(0), QStringLiteral("The node exited unexpectedly (signal 6). The node's store is "
                                     "damaged. “Clear Storage…”, then “Start Node”, repairs it: "
                                     "the node downloads the ledger again."));
    QVERIFY(application->endsWell(SIGTERM));
    QCOMPARE(m_service->calls.size(), 1);
}

/// The button opens the page with the program that the desktop uses for such files.
void TestNotifications::missingNodeOffersHelp()
{
    m_service->capabilities.append(QStringLiteral("actions"));
    const TestBundle bundle;
    std::filesystem::remove(bundle.node());
    writeFile(bundle.resource("real-node.html"), "<p>how to</p>");
    const TemporaryFolder folder;
    const std::filesystem::path opened = folder.path() / "opened";
    writeFile(folder.path() / "xdg-open",
              "#!/bin/sh\necho \"$1\" >\"" + QByteArray::fromStdString(opened.string()) + "\"\n");
    std::filesystem::permissions(folder.path() / "xdg-open", std::filesystem::perms::owner_all);

    LaunchedApplication application(bundle, "",
                                    {{"PATH", folder.path().string() + ":/usr/bin:/bin"}});
    QVERIFY(waitUntil([&] { return !m_service->calls.isEmpty(); }));
    QVERIFY2(body(0).contains(QStringLiteral("Install the package “xrpld”")), qPrintable(body(0)));
    const QStringList actions = m_service->calls[0].at(5).toStringList();
    QCOMPARE(actions.value(1), QStringLiteral("How to Install…"));
    // Repeated until the application knows the notification's id.
    QVERIFY(waitUntil([&] {
        m_service->choose(41, actions[0]);
        return std::filesystem::exists(opened) && !contentOf(opened).isEmpty();
    }));
    QVERIFY(contentOf(opened).contains("/Contents/Resources/real-node.html"));
    QVERIFY(application.endsWell(SIGTERM));
}

TIDEWICK_LOOPBACK_TEST_MAIN(TestNotifications)
#include "tst_notifications.moc"
