// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "platform/time/Clock.h"
#include "platform/time/ContinuousTimer.h"
#include "support/NoDescriptorsLeft.h"
#include "support/Surroundings.h"

#include <ctime>

using namespace tidewick;
using namespace std::chrono_literals;

namespace {

std::chrono::nanoseconds read(clockid_t clock)
{
    timespec time{};
    clock_gettime(clock, &time);
    return std::chrono::seconds(time.tv_sec) + std::chrono::nanoseconds(time.tv_nsec);
}

} // namespace

class TestClock : public QObject
{
    Q_OBJECT

private slots:
    void continuousClockCountsSleep();
    void timerIsNeverEarly();
    void timerInThePastFiresFromTheEventLoop();
    void timerWorksWithoutDescriptors();
    void alarmRingsOnce();
    void destroyedAlarmIsSilent();
    void alarmMayDestroyItself();
};

void TestClock::continuousClockCountsSleep()
{
    const auto before = read(CLOCK_BOOTTIME);
    const auto now = ContinuousClock::now().time_since_epoch();
    const auto after = read(CLOCK_BOOTTIME);
    QVERIFY(before <= now && now <= after);

    const auto suspendingBefore = read(CLOCK_MONOTONIC);
    const auto suspendingNow = SystemClock().suspendingNow().time_since_epoch();
    QVERIFY(suspendingBefore <= suspendingNow && suspendingNow <= read(CLOCK_MONOTONIC));
}

void TestClock::timerIsNeverEarly()
{
    for (int i = 0; i < 20; ++i) {
        const auto when = ContinuousClock::now() + 5ms;
        ContinuousTimer timer(when);
        QSignalSpy spy(&timer, &ContinuousTimer::elapsed);
        QVERIFY(spy.wait());
        QVERIFY(ContinuousClock::now() >= when);
    }
}

void TestClock::timerInThePastFiresFromTheEventLoop()
{
    for (const auto when : {ContinuousClock::now() - 1h, ContinuousClock::time_point(),
                            ContinuousClock::time_point(-1s)}) {
        ContinuousTimer timer(when);
        QSignalSpy spy(&timer, &ContinuousTimer::elapsed);
        QCOMPARE(spy.count(), 0);
        QVERIFY(spy.wait());
        QCoreApplication::processEvents();
        QCOMPARE(spy.count(), 1);
    }
}

void TestClock::timerWorksWithoutDescriptors()
{
    const auto when = ContinuousClock::now() + 20ms;
    std::unique_ptr<ContinuousTimer> timer;
    {
        const NoDescriptorsLeft exhausted;
        timer = std::make_unique<ContinuousTimer>(when);
    }
    QSignalSpy spy(timer.get(), &ContinuousTimer::elapsed);
    QVERIFY(spy.wait());
    QVERIFY(ContinuousClock::now() >= when);
    QCOMPARE(spy.count(), 1);
}

void TestClock::alarmRingsOnce()
{
    SystemClock clock;
    int rings = 0;
    const auto alarm = clock.alarm(clock.continuousNow() + 1ms, [&] { ++rings; });
    QCOMPARE(rings, 0);
    QTRY_COMPARE(rings, 1);
    QCoreApplication::processEvents();
    QCOMPARE(rings, 1);
}

void TestClock::destroyedAlarmIsSilent()
{
    SystemClock clock;
    bool wrong = false;
    bool right = false;
    {
        const auto alarm = clock.alarm(clock.continuousNow() + 1ms, [&] { wrong = true; });
    }
    const auto later = clock.alarm(clock.continuousNow() + 10ms, [&] { right = true; });
    QTRY_VERIFY(right);
    QVERIFY(!wrong);
}

void TestClock::alarmMayDestroyItself()
{
    SystemClock clock;
    std::unique_ptr<Alarm> alarm;
    bool rung = false;
    alarm = clock.alarm(clock.continuousNow(), [&] {
        alarm.reset();
        rung = true;
    });
    QTRY_VERIFY(rung);
}

TIDEWICK_TEST_MAIN(TestClock)
#include "tst_clock.moc"
