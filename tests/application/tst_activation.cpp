// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "application/Desktop.h"
#include "application/LaunchedApplication.h"
#include "application/XWindows.h"
#include "support/Surroundings.h"
#include "support/TrayWatcherService.h"

#include <QDBusConnectionInterface>
#include <QDBusMessage>

#include <csignal>

using namespace tidewick;

/// Tests the application when the session bus starts it, as it does for an activatable desktop
/// entry.
class TestActivation : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void cleanup();

    void opensTheLedgerOnceATrayAppears();
    void opensTheLedgerWithAnXEmbedTray();
    void opensThePanelWithoutATray();
    void startsWithAnAction();
    void tellsTheLauncherThatItHasStarted();
    void quitsAtOnce();

private:
    static bool call(const SessionBus &bus, const char *method, const QVariantList &arguments);
    static bool runs(const SessionBus &bus);
    static bool quits(const SessionBus &bus);

    TestBundle m_bundle;
};

namespace {

const QString name = QStringLiteral("org.tidewick.Tidewick");

} // namespace

/// Installs the service file, adapted to the program of this test.
void TestActivation::initTestCase()
{
    QByteArray service =
        contentOf(std::filesystem::path(TIDEWICK_PACKAGING) / "org.tidewick.Tidewick.service.in");
    service.replace("@COMMAND_FOR_BUS@",
                    QByteArray::fromStdString(m_bundle.application().string()));
    const std::filesystem::path services =
        std::filesystem::path(qgetenv("XDG_DATA_HOME").toStdString()) / "dbus-1" / "services";
    std::filesystem::create_directories(services);
    writeFile(services / "org.tidewick.Tidewick.service", service);
    qputenv("TIDEWICK_SIMNODE", "speed=20 state=full");
}

void TestActivation::cleanup()
{
    std::filesystem::remove_all(applicationData());
}

bool TestActivation::call(const SessionBus &bus, const char *method, const QVariantList &arguments)
{
    QDBusMessage message = QDBusMessage::createMethodCall(
        name, QStringLiteral("/org/tidewick/Tidewick"),
        QStringLiteral("org.freedesktop.Application"), QString::fromLatin1(method));
    message.setArguments(arguments);
    return bus.connection().call(message).type() == QDBusMessage::ReplyMessage;
}

bool TestActivation::runs(const SessionBus &bus)
{
    return bus.connection().interface()->isServiceRegistered(name);
}

bool TestActivation::quits(const SessionBus &bus)
{
    return call(bus, "ActivateAction", {QStringLiteral("quit"), QVariantList(), QVariantMap()})
           && waitUntil([&] { return !runs(bus); });
}

/// A desktop may start applications before its tray is complete.
void TestActivation::opensTheLedgerOnceATrayAppears()
{
    const XServer display;
    const SessionBus bus;
    QVERIFY(call(bus, "Activate", {QVariantMap()}));
    QVERIFY(!isWindowShown(QStringLiteral("Tidewick")));
    const TrayWatcherService tray(bus.connection());
    QVERIFY(waitUntil([] { return isWindowShown(QStringLiteral("Live Ledger")); }));
    QVERIFY(!isWindowShown(QStringLiteral("Tidewick")));
    QVERIFY(quits(bus));
}

/// Another kind of tray may still appear and be preferred, but either way the application will be
/// in a tray.
void TestActivation::opensTheLedgerWithAnXEmbedTray()
{
    const XServer display;
    const XEmbedPlace place;
    const SessionBus bus;
    const LaunchedApplication application(m_bundle, "listen=no");
    QVERIFY(waitUntil([&] { return runs(bus); }));
    QVERIFY(call(bus, "Activate", {QVariantMap()}));
    QVERIFY(waitUntil([] {
        return isWindowShown(QStringLiteral("Live Ledger"))
               || isWindowShown(QStringLiteral("Tidewick"));
    }));
    QVERIFY(!isWindowShown(QStringLiteral("Tidewick")));
    QVERIFY(quits(bus));
}

void TestActivation::opensThePanelWithoutATray()
{
    const XServer display;
    const SessionBus bus;
    QVERIFY(call(bus, "Activate", {QVariantMap()}));
    QVERIFY(waitUntil([] { return isWindowShown(QStringLiteral("Tidewick")); }));
    QVERIFY(!isWindowShown(QStringLiteral("Live Ledger")));
    QVERIFY(quits(bus));
}

void TestActivation::startsWithAnAction()
{
    const XServer display;
    const SessionBus bus;
    QVERIFY(
        call(bus, "ActivateAction", {QStringLiteral("settings"), QVariantList(), QVariantMap()}));
    QVERIFY(waitUntil([] { return isWindowShown(QStringLiteral("Tidewick Settings")); }));
    QVERIFY(quits(bus));
}

/// Otherwise a launcher shows that the program is starting until it runs out of patience: in the
/// tray, the program has no window whose appearance would tell.
void TestActivation::tellsTheLauncherThatItHasStarted()
{
    const XServer display;
    const SessionBus bus;
    const TrayWatcherService tray(bus.connection());
    LaunchMessages messages;
    const ProcessEnvironment first{{"DESKTOP_STARTUP_ID", "launcher/first \"one\"_TIME1"}};
    LaunchedApplication application(m_bundle, "speed=20 state=full", first);
    QVERIFY(waitUntil(
        [&] { return messages.contain("remove: ID=\"launcher/first \\\"one\\\"_TIME1\""); }));
    QVERIFY(waitUntil([&] { return application.node().has_value(); }));
    QVERIFY(!isWindowShown(QStringLiteral("Live Ledger")));

    LaunchedApplication second(m_bundle, {}, {{"DESKTOP_STARTUP_ID", "launcher/second_TIME2"}});
    QVERIFY(second.process().waitForEnd());
    QVERIFY(waitUntil([&] { return messages.contain("remove: ID=\"launcher/second_TIME2\""); }));
    QVERIFY(isWindowShown(QStringLiteral("Live Ledger")));

    const QVariantMap third{{QStringLiteral("desktop-startup-id"), QStringLiteral("third_TIME3")}};
    QVERIFY(call(bus, "ActivateAction", {QStringLiteral("settings"), QVariantList(), third}));
    QVERIFY(waitUntil([&] { return messages.contain("remove: ID=\"third_TIME3\""); }));
    QVERIFY(application.endsWell(SIGTERM));
}

void TestActivation::quitsAtOnce()
{
    const XServer display;
    const SessionBus bus;
    QVERIFY(!runs(bus));
    QVERIFY(quits(bus));
}

TIDEWICK_LOOPBACK_TEST_MAIN(TestActivation)
#include "tst_activation.moc"
