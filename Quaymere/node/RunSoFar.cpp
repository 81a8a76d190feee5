// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "node/RunSoFar.h"

#include "platform/json/JsonRead.h"
#include "platform/text/NumberText.h"

#include <algorithm>

namespace tidewick {

namespace {

/// A node that keeps up waits for a few milliseconds at most.
constexpr qint64 slowLatencyMs = 100;
/// The node raises its own load by a quarter at a time while it cannot keep up, and lowers it again
/// as soon as it can: a load this high is no passing peak.
constexpr double highLoad = 4;

/// How long the node has been in its current state, by its own account.
std::chrono::seconds inState(const QJsonObject &info)
{
    const auto microseconds = NumberText::integer(info[u"server_state_duration_us"].toString());
    return std::chrono::floor<std::chrono::seconds>(
        std::chrono::microseconds(microseconds.value_or(0)));
}

} // namespace

void RunSoFar::Since::update(bool holds, Time now)
{
    if (!holds)
        m_begin.reset();
    else if (!m_begin)
        m_begin = now;
}

std::chrono::seconds RunSoFar::Since::length(Time now) const
{
    return m_begin ? std::chrono::floor<std::chrono::seconds>(now - *m_begin)
                   : std::chrono::seconds(0);
}

void RunSoFar::take(const QJsonObject &info, Phase phase, Time now)
{
    m_answeredAt = now;
    m_info = info;
    const bool inSync = phase == Phase::Full;
    const bool hasPeers = JsonRead::integer(info[u"peers"]).value_or(0) > 0;
    // A standalone node may well be in sync without peers.
    m_withoutPeers.update(!hasPeers && !inSync, now);
    m_outOfSync.update(hasPeers && (phase == Phase::Connecting || phase == Phase::Syncing), now);
    m_slowDisk.update(JsonRead::integer(info[u"io_latency_ms"]).value_or(0) >= slowLatencyMs, now);
    m_overloaded.update(nodeLoad(info) >= highLoad, now);
}

RunningNode RunSoFar::at(Time now, WallClock::time_point wallNow, bool hasCompany) const
{
    RunningNode node;
    node.info = m_info;
    node.listSites = m_listSites;
    node.unanswered = std::chrono::floor<std::chrono::seconds>(now - m_answeredAt);
    node.withoutPeers = m_withoutPeers.length(now);
    node.outOfSync = m_outOfSync.length(now);
    if (m_outOfSync.holds())
        node.outOfSync = std::max(node.outOfSync, inState(*m_info));
    node.slowDisk = m_slowDisk.length(now);
    node.overloaded = m_overloaded.length(now);
    node.hasCompany = hasCompany;
    node.now = wallNow;
    return node;
}

} // namespace tidewick
