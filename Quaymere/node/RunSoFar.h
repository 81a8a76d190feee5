// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include "node/Advice.h"

#include <optional>

namespace tidewick {

/// Accumulates the answers of a run for advice: how long there has been none, how long the node has
/// had no peers, and so on. A value for one run of the node.
class RunSoFar
{
public:
    using Time = SuspendingClock::time_point;

    explicit RunSoFar(Time startedAt = {}) : m_answeredAt(startedAt) {}

    /// Processes the "info" object of an answer that has just arrived, and the phase that it means.
    void take(const QJsonObject &info, Phase phase, Time now);

    /// Processes an answer to validator_list_sites.
    void takeListSites(const QJsonObject &answer) { m_listSites = answer; }

    /// Whether it is worth asking which publishers' sites fail.
    bool lacksLists() const { return m_info && lacksValidatorLists(*m_info); }

    /// The current state of the node.
    RunningNode at(Time now, WallClock::time_point wallNow, bool hasCompany) const;

private:
    /// How long a condition has held without interruption.
    class Since
    {
    public:
        void update(bool holds, Time now);
        bool holds() const { return m_begin.has_value(); }
        std::chrono::seconds length(Time now) const;

    private:
        std::optional<Time> m_begin;
    };

    Time m_answeredAt;
    std::optional<QJsonObject> m_info;
    std::optional<QJsonObject> m_listSites;
    Since m_withoutPeers;
    Since m_outOfSync;
    Since m_slowDisk;
    Since m_overloaded;
};

} // namespace tidewick
