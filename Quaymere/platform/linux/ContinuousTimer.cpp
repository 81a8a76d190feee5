// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "platform/time/ContinuousTimer.h"

#include <algorithm>

#include <sys/timerfd.h>

namespace tidewick {

namespace {

// Without a kernel timer, the clock is checked this often, so that time spent asleep is noticed
// soon.
constexpr std::chrono::milliseconds fallbackStep{1000};

} // namespace

ContinuousTimer::ContinuousTimer(ContinuousClock::time_point when, QObject *parent)
    : QObject(parent), m_when(when)
{
    m_fallback.setSingleShot(true);
    m_fallback.setTimerType(Qt::PreciseTimer);
    connect(&m_fallback, &QTimer::timeout, this, &ContinuousTimer::startFallback);
    if (!startKernelTimer())
        m_fallback.start(0);
}

bool ContinuousTimer::startKernelTimer()
{
    m_descriptor = UniqueDescriptor(timerfd_create(CLOCK_BOOTTIME, TFD_NONBLOCK | TFD_CLOEXEC));
    if (!m_descriptor)
        return false;

    // A zero or negative time would disarm the timer instead of firing it at once.
    const auto sinceBoot =
        std::max<std::chrono::nanoseconds>(m_when.time_since_epoch(), std::chrono::nanoseconds(1));
    const auto seconds = std::chrono::floor<std::chrono::seconds>(sinceBoot);
    itimerspec spec{};
    spec.it_value.tv_sec = seconds.count();
    spec.it_value.tv_nsec = (sinceBoot - seconds).count();
    if (timerfd_settime(m_descriptor.get(), TFD_TIMER_ABSTIME, &spec, nullptr) != 0)
        return false;

    m_notifier = std::make_unique<QSocketNotifier>(m_descriptor.get(), QSocketNotifier::Read);
    connect(m_notifier.get(), &QSocketNotifier::activated, this, &ContinuousTimer::fire);
    return true;
}

/// Descriptors can run out. A wait that never ended would then leave a node unmonitored.
void ContinuousTimer::startFallback()
{
    const auto left = std::chrono::ceil<std::chrono::milliseconds>(m_when - ContinuousClock::now());
    if (left <= std::chrono::milliseconds::zero())
        fire();
    else
        m_fallback.start(std::min(left, fallbackStep));
}

void ContinuousTimer::fire()
{
    if (m_notifier)
        m_notifier->setEnabled(false);
    emit elapsed();
}

} // namespace tidewick
