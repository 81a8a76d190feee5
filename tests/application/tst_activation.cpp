// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "application/Desktop.h"
#include "application/LaunchedApplication.h"
#include "application/XWindows.h"
#include "support/Surroundings.h"
#include "support/TrayWatcherService.h"

#include <QDBusConnectionInterface>
#include <QDBusMessage>

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
    void opensThePanelWithoutATray();
    void startsWithAnAction();
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

void TestActivation::quitsAtOnce()
{
    const XServer display;
    const SessionBus bus;
    QVERIFY(!runs(bus));
    QVERIFY(quits(bus));
}

TIDEWICK_LOOPBACK_TEST_MAIN(TestActivation)
#include "tst_activation.moc"
