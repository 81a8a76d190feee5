// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "application/Desktop.h"
#include "application/LaunchedApplication.h"
#include "platform/files/Defaults.h"
#include "support/Surroundings.h"

#include <QDBusMessage>
#include <QRegularExpression>

#include <csignal>

using namespace tidewick;

/// Tests the application without a display.
class TestTerminal : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup()
    {
        std::filesystem::remove_all(applicationData());
        Defaults::standard().remove(QStringLiteral("diskGuardFreeGB"));
    }

    void printsOnlyChanges();
    void printsTheWholeError();
    void missingDisplay();
    void secondLaunchReportsTheFirst();
    void quitsOverTheBus();
    void numbersDoNotFollowTheLocale();

private:
    std::unique_ptr<LaunchedApplication> launch(const QByteArray &scenario,
                                                ProcessEnvironment variables = {});

    TestBundle m_bundle;
    std::unique_ptr<TemporaryFolder> m_runtime;
};

void TestTerminal::init()
{
    m_runtime = std::make_unique<TemporaryFolder>();
}

/// Launches without a bus, unless the test has created one.
std::unique_ptr<LaunchedApplication> TestTerminal::launch(const QByteArray &scenario,
                                                          ProcessEnvironment variables)
{
    variables.insert({{"DISPLAY", ""}, {"WAYLAND_DISPLAY", ""}, {"QT_QPA_PLATFORM", ""}});
    if (!qEnvironmentVariableIsSet("DBUS_SESSION_BUS_ADDRESS"))
        variables["XDG_RUNTIME_DIR"] = m_runtime->path().string();
    return std::make_unique<LaunchedApplication>(m_bundle, scenario, variables);
}

void TestTerminal::printsOnlyChanges()
{
    const auto application = launch("speed=50");
    QVERIFY(waitUntil([&] { return application->output().contains("Full · Following mainnet"); }));
    QVERIFY(application->endsWell(SIGTERM));
    const QByteArrayList lines = application->output().trimmed().split('\n');
    QCOMPARE(lines.first(), "Starting… · Opening the store");
    QVERIFY2(lines.last().startsWith("Stopped · Quitting"), application->output());
    for (qsizetype at = 1; at < lines.size(); ++at)
        QVERIFY(lines[at] != lines[at - 1]);
}

void TestTerminal::printsTheWholeError()
{
    const auto application = launch("exit=3");
    QVERIFY(waitUntil([&] {
        return application->output().contains("The node exited unexpectedly (exit status 3).\n")
               && application->output().contains("simulated");
    }));
    QVERIFY(application->endsWell(SIGINT));
}

void TestTerminal::missingDisplay()
{
    const auto application =
        std::make_unique<LaunchedApplication>(m_bundle, "speed=50 state=full",
                                              ProcessEnvironment{
                                                  {"DISPLAY", ":4711"},
                                                  {"WAYLAND_DISPLAY", "no-such-socket"},
                                                  {"XDG_RUNTIME_DIR", m_runtime->path().string()},
                                              });
    QVERIFY(waitUntil([&] { return application->output().startsWith("Starting…"); }));
    QVERIFY(application->endsWell(SIGTERM));
}

void TestTerminal::secondLaunchReportsTheFirst()
{
    const SessionBus bus;
    const auto first = launch("listen=no");
    QVERIFY(waitUntil([&] { return first->node().has_value(); }));
    const auto second = launch("listen=no");
    QVERIFY(second->process().waitForEnd());
    QCOMPARE(second->process().ending()->status, 1);
    QCOMPARE(
        second->output(),
        "Tidewick is already running, but did not come to the front: it runs without a display\n");
    QVERIFY(first->endsWell(SIGTERM));
}

void TestTerminal::quitsOverTheBus()
{
    const SessionBus bus;
    const auto application = launch("listen=no");
    QVERIFY(waitUntil([&] { return application->node().has_value(); }));
    QDBusMessage call = QDBusMessage::createMethodCall(
        QStringLiteral("org.tidewick.Tidewick"), QStringLiteral("/org/tidewick/Tidewick"),
        QStringLiteral("org.freedesktop.Application"), QStringLiteral("ActivateAction"));
    call.setArguments({QStringLiteral("quit"), QVariantList(), QVariantMap()});
    QCOMPARE(bus.connection().call(call).type(), QDBusMessage::ReplyMessage);
    QVERIFY(application->process().waitForEnd());
    QCOMPARE(application->process().ending()->status, 0);
}

void TestTerminal::numbersDoNotFollowTheLocale()
{
    Defaults::standard().setInteger(QStringLiteral("diskGuardFreeGB"), 1'000'000);
    const auto application = launch("listen=no", {{"LC_ALL", "de_DE.UTF-8"}, {"LANGUAGE", "de"}});
    QVERIFY(waitUntil([&] { return application->output().contains("the disk guard needs"); }));
    static const QRegularExpression refusal(
        QStringLiteral("Only [0-9]+\\.[0-9] GB free; the disk guard needs 1000000 GB\\."));
    QVERIFY(QString::fromUtf8(application->output()).contains(refusal));
    QVERIFY(application->endsWell(SIGTERM));
}

TIDEWICK_LOOPBACK_TEST_MAIN(TestTerminal)
#include "tst_terminal.moc"
