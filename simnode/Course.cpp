// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "simnode/Course.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <span>

namespace tidewick::sim {

namespace {

struct Stage
{
    const char *state;
    /// The coarse state that this one is counted under.
    const char *account;
    Seconds from;
};

constexpr auto stages = std::to_array<Stage>({
    {"waiting_quorum", "disconnected", Seconds(0)},
    {"acquiring", "connected", Seconds(5)},
    {"catching_up", "connected", Seconds(12)},
    {"syncing", "syncing", Seconds(20)},
    {"tracking", "tracking", Seconds(25)},
    {"full", "full", Seconds(30)},
});

/// The stages of a stock node, at the same times.
constexpr auto stockStages = std::to_array<Stage>({
    {"disconnected", "disconnected", stages[0].from},
    {"connected", "connected", stages[1].from},
    stages[3],
    stages[4],
    stages[5],
});

std::span<const Stage> stagesOf(Course::Kind kind)
{
    if (kind == Course::Kind::Stock)
        return stockStages;
    return stages;
}

constexpr auto accountNames =
    std::to_array<const char *>({"connected", "disconnected", "full", "syncing", "tracking"});

constexpr Seconds acquiringFrom = stages[1].from;
constexpr Seconds catchingUpFrom = stages[2].from;
constexpr Seconds bootstrapEnd = stages[3].from;

const Stage &stageAt(Seconds elapsed, std::span<const Stage> all)
{
    const auto later = std::find_if(all.begin(), all.end(),
                                    [elapsed](const Stage &stage) { return stage.from > elapsed; });
    return later == all.begin() ? all.front() : *(later - 1);
}

const Stage *stageNamed(const QString &state)
{
    const auto *stage = std::find_if(stages.begin(), stages.end(), [&state](const Stage &known) {
        return state == QLatin1String(known.state);
    });
    return stage == stages.end() ? nullptr : stage;
}

bool isOneOf(const QString &state, std::initializer_list<const char *> names)
{
    return std::any_of(names.begin(), names.end(),
                       [&state](const char *name) { return state == QLatin1String(name); });
}

/// Finds a dozen within half a minute; after that, a few come and go.
int peersAt(Seconds elapsed)
{
    constexpr int first = 12;
    constexpr auto comeAndGo = std::to_array<int>({0, 1, 3, 2, 0, -1, -2, 1});
    const auto arrived = static_cast<qint64>(elapsed / Seconds(2));
    if (arrived < first)
        return static_cast<int>(arrived);
    const auto turn = static_cast<std::size_t>(elapsed / Seconds(17)) % comeAndGo.size();
    return first + comeAndGo[turn];
}

/// Grows fast while a new node loads the ledger, then at the pace of the network.
qint64 storedBytes(Seconds bootstrapping, Seconds afterwards)
{
    constexpr double fast = 3'100'000;
    constexpr double steady = 130'000;
    return static_cast<qint64>(bootstrapping.count() * fast + afterwards.count() * steady);
}

/// `within` is the node's position in the unpinned course, `loading` the time that it has spent
/// bootstrapping, and `since` the time since then.
Bootstrap bootstrapOf(const QString &state, Seconds within, Seconds loading, Seconds since)
{
    constexpr double behindAtFirst = 1200;
    constexpr Seconds onePass(2.5);
    const bool enabled = isOneOf(state, {"waiting_quorum", "acquiring", "catching_up"});
    const double toGo =
        std::clamp((bootstrapEnd - within) / (bootstrapEnd - acquiringFrom), 0.0, 1.0);
    const Seconds passing = std::clamp(within, catchingUpFrom, bootstrapEnd) - catchingUpFrom;
    return {enabled, enabled ? state : QStringLiteral("done"), static_cast<int>(passing / onePass),
            static_cast<int>(std::ceil(behindAtFirst * toGo)), storedBytes(loading, since)};
}

/// The position in the unpinned course of a node that has been pinned to a state for `elapsed`: it
/// goes through that state again and again.
Seconds positionOf(const QString &state, Seconds elapsed)
{
    const Stage *stage = stageNamed(state);
    if (stage == nullptr || stage == &stages.back())
        return stages.back().from + elapsed;
    const Seconds length = (stage + 1)->from - stage->from;
    return stage->from + Seconds(std::fmod(elapsed.count(), length.count()));
}

} // namespace

Course::Course(std::optional<QString> pinnedState, std::optional<int> pinnedPeers, Kind kind)
    : m_pinnedState(std::move(pinnedState)), m_pinnedPeers(pinnedPeers), m_kind(kind)
{
}

Moment Course::at(Seconds elapsed) const
{
    const Stage &stage = stageAt(elapsed, stagesOf(m_kind));
    Moment moment{};
    moment.state = m_pinnedState.value_or(QString::fromLatin1(stage.state));
    moment.inState = m_pinnedState ? elapsed : elapsed - stage.from;
    moment.waitsForNetwork = isOneOf(moment.state, {"waiting_quorum", "acquiring", "disconnected"});
    moment.validates = isOneOf(moment.state, {"tracking", "full", "proposing", "validating"});
    if (moment.validates && moment.state != QLatin1String("tracking"))
        moment.full = moment.inState;
    const Seconds within = m_pinnedState ? positionOf(moment.state, elapsed) : elapsed;
    Seconds loading = std::min(elapsed, bootstrapEnd);
    if (m_pinnedState)
        loading = within < bootstrapEnd ? elapsed : Seconds(0);
    moment.peers = m_pinnedPeers.value_or(peersAt(within));
    moment.bootstrap = bootstrapOf(moment.state, within, loading, elapsed - loading);
    return moment;
}

QStringList Course::statesUntil(Seconds elapsed) const
{
    if (m_pinnedState)
        return {*m_pinnedState};
    QStringList states;
    for (const Stage &stage : stagesOf(m_kind)) {
        if (stage.from <= elapsed)
            states += QString::fromLatin1(stage.state);
    }
    return states;
}

std::map<QString, StateAccount> Course::accounts(Seconds elapsed) const
{
    std::map<QString, StateAccount> accounts;
    for (const char *name : accountNames)
        accounts[QString::fromLatin1(name)] = {};
    if (m_pinnedState) {
        const Stage *stage = stageNamed(*m_pinnedState);
        accounts[QString::fromLatin1(stage != nullptr ? stage->account : "connected")] = {elapsed,
                                                                                          1};
        return accounts;
    }
    const std::span<const Stage> all = stagesOf(m_kind);
    for (const Stage &stage : all) {
        if (stage.from > elapsed)
            break;
        const Seconds end = &stage == &all.back() ? elapsed : (&stage + 1)->from;
        StateAccount &account = accounts[QString::fromLatin1(stage.account)];
        account.duration += std::min(end, elapsed) - stage.from;
        account.transitions = 1;
    }
    return accounts;
}

} // namespace tidewick::sim
