// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "application/Desktop.h"
#include "application/LaunchedApplication.h"
#include "application/SessionManager.h"
#include "support/Surroundings.h"

#include <csignal>

using namespace tidewick;

/// Tests the application as part of a desktop session that is saved, is about to end, and ends.
class TestSession : public QObject
{
    Q_OBJECT

private slots:
    void cleanup();

    void keepsRunningWhenTheSessionIsSaved();
    void keepsRunningWhenLogoutIsCancelled();
    void stopsTheNodeWhenTheSessionEnds();
    void sessionEndsWhileQuitting();

private:
    /// Launches the application and waits until it has joined the session and knows that its node
    /// answers.
    std::unique_ptr<LaunchedApplication> launch(const QByteArray &scenario = "state=full");
    bool saves(bool beforeTheEnd);

    const SessionBus m_bus;
    const XServer m_display;
    const TestBundle m_bundle;
    SessionManager m_session;
};

void TestSession::cleanup()
{
    std::filesystem::remove_all(applicationData());
}

std::unique_ptr<LaunchedApplication> TestSession::launch(const QByteArray &scenario)
{
    const int saved = m_session.saved();
    auto application = std::make_unique<LaunchedApplication>(m_bundle, scenario);
    if (!waitUntil([&] {
            return m_session.clients() == 1 && m_session.saved() > saved
                   && LaunchedApplication::noted("server_info") > 1;
        }))
        qFatal("The application did not join the session");
    return application;
}

bool TestSession::saves(bool beforeTheEnd)
{
    const int saved = m_session.saved();
    m_session.askToSave(beforeTheEnd);
    return waitUntil([&] { return m_session.saved() > saved; });
}

/// Settings are stored as soon as they are chosen, so there is nothing to save and no reason to
/// exit.
void TestSession::keepsRunningWhenTheSessionIsSaved()
{
    const auto application = launch();
    const auto node = application->node();
    QVERIFY(node);
    QVERIFY(saves(false));
    const qsizetype polls = LaunchedApplication::noted("server_info");
    QVERIFY(waitUntil([&] { return LaunchedApplication::noted("server_info") > polls + 1; }));
    QCOMPARE(LaunchedApplication::noted("RPCHandler:NFO stop"), 0);
    QCOMPARE(application->node(), node);
    QVERIFY(application->endsWell(SIGTERM));
}

void TestSession::keepsRunningWhenLogoutIsCancelled()
{
    const auto application = launch();
    const auto node = application->node();
    QVERIFY(node);
    QVERIFY(saves(true));
    m_session.cancelTheEnd();
    const qsizetype polls = LaunchedApplication::noted("server_info");
    QVERIFY(waitUntil([&] { return LaunchedApplication::noted("server_info") > polls + 1; }));
    QCOMPARE(LaunchedApplication::noted("RPCHandler:NFO stop"), 0);
    QCOMPARE(application->node(), node);
    QVERIFY(application->endsWell(SIGTERM));
}

void TestSession::stopsTheNodeWhenTheSessionEnds()
{
    const auto application = launch("state=full stop-delay=1");
    QVERIFY(saves(true));
    m_session.endTheSession();
    QVERIFY(application->process().waitForEnd());
    QVERIFY(!application->process().ending()->signaled);
    QCOMPARE(application->process().ending()->status, 0);
    QCOMPARE(LaunchedApplication::noted("RPCHandler:NFO stop"), 1);
    QVERIFY(LaunchedApplication::debugLog().contains("Application:NFO Done."));
}

void TestSession::sessionEndsWhileQuitting()
{
    const auto application = launch("state=full stop-delay=1");
    application->process().send(SIGTERM);
    QVERIFY(waitUntil([] { return LaunchedApplication::noted("RPCHandler:NFO stop") > 0; }));
    m_session.endTheSession();
    QVERIFY(application->process().waitForEnd());
    QVERIFY(!application->process().ending()->signaled);
    QCOMPARE(application->process().ending()->status, 0);
    QCOMPARE(LaunchedApplication::noted("RPCHandler:NFO stop"), 1);
}

TIDEWICK_LOOPBACK_TEST_MAIN(TestSession)
#include "tst_session.moc"
