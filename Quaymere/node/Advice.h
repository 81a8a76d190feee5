// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include "node/NodeStatus.h"
#include "platform/time/Clock.h"

#include <QJsonObject>

#include <chrono>
#include <filesystem>
#include <optional>

// From what a node says, and from what it does not say, to the one thing its user should know. Pure
// functions of their arguments; the texts stand together here.

namespace tidewick {

/// How a running node is, as far as advice depends on it. The lengths of time do not count what the
/// machine slept.
struct RunningNode
{
    /// The "info" object of its last server_info answer; nothing before the first.
    std::optional<QJsonObject> info;
    /// Its last answer to validator_list_sites, if it was asked.
    std::optional<QJsonObject> listSites;
    /// Since its last answer, or since its start before the first.
    std::chrono::seconds unanswered{0};
    std::chrono::seconds withoutPeers{0};
    /// It has peers, and has not been in sync.
    std::chrono::seconds outOfSync{0};
    /// Each answer spoke of slow input and output.
    std::chrono::seconds slowDisk{0};
    /// Each answer spoke of more load than it can take.
    std::chrono::seconds overloaded{0};
    /// There is another node on this machine.
    bool hasCompany = false;
    WallClock::time_point now;
};

/// How a node ended that nobody had told to, or why it did not start.
struct EndedNode
{
    /// The file that is run as the node; a link is named by what it leads to.
    std::filesystem::path executable;
    bool executableExists = true;
    /// Whether it has answered in its run. One that has was able to read its configuration and
    /// store.
    bool hasAnswered = false;
    /// The last lines it printed.
    QString lastWords;
    /// Whether it was configured for the store Mossgrid rather than for NuDB.
    bool hasMossgrid = false;
};

/// What to tell about a node that runs: of all causes that hold, the one to mend first.
std::optional<Advice> adviceOn(const RunningNode &node);

/// What to tell about a node that has ended by itself or could not be started.
std::optional<Advice> adviceOn(const EndedNode &node);

/// Whether the node has had the time to fetch its lists of validators and has none that is valid.
bool lacksValidatorLists(const QJsonObject &info);

/// How many times the usual load this machine carries, as the node tells it; 1 where it does not.
double nodeLoad(const QJsonObject &info);

} // namespace tidewick
