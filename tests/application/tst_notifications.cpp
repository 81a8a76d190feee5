// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "application/Desktop.h"
#include "application/LaunchedApplication.h"
#include "application/TrayReader.h"
#include "platform/Defaults.h"
#include "support/NotificationService.h"
#include "support/Surroundings.h"

#include <csignal>

using namespace tidewick;

/// Who is told of what: a notification when the node stops on its own, and then only.
class TestNotifications : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void unexpectedExit();
    void refusedStart();
    void quietExit();
    void noneForWhatTheUserAskedFor();

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

/// Whatever the status, nobody asked for it.
void TestNotifications::quietExit()
{
    const auto application = launch("speed=50 state=full exit=0 after=2");
    QVERIFY(waitUntil([&] { return !m_service->calls.isEmpty(); }));
    QCOMPARE(body(0), QStringLiteral("The node exited unexpectedly (exit status 0)."));
    QVERIFY(application->endsWell(SIGTERM));
    QCOMPARE(m_service->calls.size(), 1);
}

void TestNotifications::noneForWhatTheUserAskedFor()
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
    // The menu is read after whatever was sent before it changed.
    QVERIFY(titleIs("Stopped"));
    QCOMPARE(m_service->asked, 0);
    QCOMPARE(m_service->calls.size(), 0);
    QVERIFY(application->endsWell(SIGTERM));
    QCOMPARE(m_service->calls.size(), 0);
}

TIDEWICK_LOOPBACK_TEST_MAIN(TestNotifications)
#include "tst_notifications.moc"
