// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "platform/tasks/Task.h"
#include "support/FakeClock.h"
#include "support/Surroundings.h"

using namespace tidewick;
using namespace std::chrono_literals;

namespace {

QCoro::Task<> append(OneShot<int> &source, QList<int> &out)
{
    out += co_await source;
}

QCoro::Task<> tick(std::shared_ptr<Clock> clock, TaskToken token, QList<int> &ticks)
{
    for (int i = 0; !token.cancelled(); ++i) {
        ticks += i;
        co_await sleepUntil(clock, clock->continuousNow() + 2s, token);
    }
    ticks += -1;
}

} // namespace

class TestTask : public QObject
{
    Q_OBJECT

private slots:
    void oneShotResumesItsWaiter();
    void oneShotKeepsAnEarlyValue();
    void oneShotTakesTheFirstValue();
    void sleepingTaskWakesInTime();
    void cancellingEndsASleepingTask();
    void destroyingTheOwnerEndsTheTask();
    void renewingEndsThePreviousTask();
    void cancelledBeforeTheSleep();
    void callbacksEndWithTheirScope();
    void machineSleepCounts();
};

void TestTask::oneShotResumesItsWaiter()
{
    OneShot<int> source;
    QList<int> out;
    append(source, out);
    QVERIFY(out.isEmpty());
    source.resolve(5);
    QCOMPARE(out, QList<int>{5});
}

void TestTask::oneShotKeepsAnEarlyValue()
{
    OneShot<int> source;
    QList<int> out;
    source.resolve(5);
    append(source, out);
    QCOMPARE(out, QList<int>{5});
}

void TestTask::oneShotTakesTheFirstValue()
{
    OneShot<int> source;
    QList<int> out;
    source.resolve(5);
    source.resolve(6);
    append(source, out);
    QCOMPARE(out, QList<int>{5});
}

void TestTask::sleepingTaskWakesInTime()
{
    const auto clock = std::make_shared<FakeClock>();
    QList<int> ticks;
    TaskOwner owner;
    tick(clock, owner.renew(), ticks);
    QCOMPARE(ticks, QList<int>{0});
    clock->advance(2s - 1ns);
    QCOMPARE(ticks, QList<int>{0});
    clock->advance(1ns);
    QCOMPARE(ticks, (QList<int>{0, 1}));
    clock->advance(6s);
    QCOMPARE(ticks, (QList<int>{0, 1, 2, 3, 4}));
    QCOMPARE(clock->alarms(), 1U);
    owner.cancel();
}

void TestTask::cancellingEndsASleepingTask()
{
    const auto clock = std::make_shared<FakeClock>();
    QList<int> ticks;
    TaskOwner owner;
    tick(clock, owner.renew(), ticks);
    QVERIFY(owner.active());
    owner.cancel();
    QVERIFY(!owner.active());
    QCOMPARE(ticks, (QList<int>{0, -1}));
    QCOMPARE(clock->alarms(), 0U);
    clock->advance(10s);
    QCOMPARE(ticks, (QList<int>{0, -1}));
}

void TestTask::destroyingTheOwnerEndsTheTask()
{
    const auto clock = std::make_shared<FakeClock>();
    QList<int> ticks;
    {
        TaskOwner owner;
        tick(clock, owner.renew(), ticks);
    }
    QCOMPARE(ticks, (QList<int>{0, -1}));
}

void TestTask::renewingEndsThePreviousTask()
{
    const auto clock = std::make_shared<FakeClock>();
    QList<int> first;
    QList<int> second;
    TaskOwner owner;
    tick(clock, owner.renew(), first);
    tick(clock, owner.renew(), second);
    QCOMPARE(first, (QList<int>{0, -1}));
    clock->advance(2s);
    QCOMPARE(second, (QList<int>{0, 1}));
}

void TestTask::cancelledBeforeTheSleep()
{
    const auto clock = std::make_shared<FakeClock>();
    TaskOwner owner;
    const TaskToken token = owner.renew();
    owner.cancel();
    QVERIFY(token.cancelled());
    QVERIFY(sleepUntil(clock, clock->continuousNow() + 2s, token).isReady());
    QCOMPARE(clock->alarms(), 0U);
}

void TestTask::callbacksEndWithTheirScope()
{
    QList<int> calls;
    TaskOwner owner;
    TaskToken token = owner.renew();
    {
        const auto gone = token.onCancel([&] { calls += 1; });
        const auto stays = token.onCancel([&] { calls += 2; });
    }
    const auto last = token.onCancel([&] { calls += 3; });
    owner.cancel();
    QCOMPARE(calls, QList<int>{3});
}

void TestTask::machineSleepCounts()
{
    const auto clock = std::make_shared<FakeClock>();
    QList<int> ticks;
    TaskOwner owner;
    tick(clock, owner.renew(), ticks);
    const auto before = clock->suspendingNow();
    clock->sleep(1h);
    QCOMPARE(ticks, (QList<int>{0, 1}));
    QCOMPARE(clock->suspendingNow(), before);
    owner.cancel();
}

TIDEWICK_TEST_MAIN(TestTask)
#include "tst_task.moc"
