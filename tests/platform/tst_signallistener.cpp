// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "platform/process/SignalListener.h"
#include "support/Surroundings.h"

#include <csignal>

using namespace tidewick;

class TestSignalListener : public QObject
{
    Q_OBJECT

private slots:
    void deliversEachSignalInTheEventLoop();
    void restoresTheDefault();
    void leavesAnIgnoredHangupIgnored();
};

void TestSignalListener::deliversEachSignalInTheEventLoop()
{
    SignalListener listener({SIGTERM, SIGINT, SIGHUP});
    QSignalSpy spy(&listener, &SignalListener::received);
    for (const int number : {SIGTERM, SIGINT, SIGHUP, SIGTERM})
        ::raise(number);
    QCOMPARE(spy.count(), 0);
    QTRY_COMPARE(spy.count(), 4);
    QCOMPARE(spy[0][0].toInt(), SIGTERM);
    QCOMPARE(spy[1][0].toInt(), SIGINT);
    QCOMPARE(spy[2][0].toInt(), SIGHUP);
    QCOMPARE(spy[3][0].toInt(), SIGTERM);
}

void TestSignalListener::restoresTheDefault()
{
    {
        const SignalListener listener({SIGTERM});
    }
    struct sigaction action
    {
    };
    ::sigaction(SIGTERM, nullptr, &action);
    QVERIFY(action.sa_handler == SIG_DFL);
}

void TestSignalListener::leavesAnIgnoredHangupIgnored()
{
    ::signal(SIGHUP, SIG_IGN);
    {
        SignalListener listener({SIGHUP, SIGTERM});
        QSignalSpy spy(&listener, &SignalListener::received);
        ::raise(SIGHUP);
        ::raise(SIGTERM);
        QVERIFY(spy.wait());
        QCOMPARE(spy[0][0].toInt(), SIGTERM);
    }
    struct sigaction action
    {
    };
    ::sigaction(SIGHUP, nullptr, &action);
    QVERIFY(action.sa_handler == SIG_IGN);
    ::signal(SIGHUP, SIG_DFL);
}

TIDEWICK_TEST_MAIN(TestSignalListener)
#include "tst_signallistener.moc"
