// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "ui/ledger/LedgerAge.h"

#include "ui/ledger/LedgerTexts.h"

namespace tidewick {

namespace {

using namespace std::chrono_literals;

/// The unit that an age is given in. Its text changes once in this time.
std::chrono::nanoseconds unitOf(std::chrono::nanoseconds age)
{
    if (age < 1min)
        return 1s;
    return age < 1h ? std::chrono::nanoseconds(1min) : 1h;
}

} // namespace

LedgerAge::LedgerAge(std::shared_ptr<Clock> clock) : m_clock(std::move(clock)) {}

void LedgerAge::follow(bool connected, std::optional<qint64> newest)
{
    const bool before = m_isOld;
    if (newest != m_newest) {
        m_newest = newest;
        m_arrived = m_clock->continuousNow();
        m_isOld = false;
    }
    if (!connected && m_newest)
        m_isOld = true;
    if (m_isOld == before)
        return;
    wakeLater();
    emit changed();
}

void LedgerAge::setShown(bool shown)
{
    if (std::exchange(m_isShown, shown) == shown)
        return;
    wakeLater();
    if (m_isOld && shown)
        emit changed();
}

QString LedgerAge::text() const
{
    return m_isOld ? LedgerTexts::age(std::chrono::floor<std::chrono::seconds>(age())) : QString();
}

std::chrono::nanoseconds LedgerAge::age() const
{
    return m_clock->continuousNow() - m_arrived;
}

void LedgerAge::wake()
{
    wakeLater();
    emit changed();
}

void LedgerAge::wakeLater()
{
    m_alarm.reset();
    if (!m_isOld || !m_isShown)
        return;
    const auto unit = unitOf(age());
    m_alarm = m_clock->alarm(m_arrived + (age() / unit + 1) * unit, [this] { wake(); });
}

} // namespace tidewick
