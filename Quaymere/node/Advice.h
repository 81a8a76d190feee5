// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include "node/NodeStatus.h"
#include "platform/time/Clock.h"

#include <QJsonObject>

#include <chrono>
#include <filesystem>
#include <optional>

// Derives the one thing its user should know from the node's answers, or from their absence. Pure
// functions of their arguments. All the texts are in one place.

namespace tidewick {

/// The state of a running node, as far as advice depends on it. Durations do not include time
/// during which the machine slept.
struct RunningNode
{
    /// The "info" object of its last server_info answer; nothing before the first.
    std::optional<QJsonObject> info;
    /// Its last answer to validator_list_sites, if it was asked.
    std::optional<QJsonObject> listSites;
    /// Since its last answer, or since its start if there has been none.
    std::chrono::seconds unanswered{0};
    std::chrono::seconds withoutPeers{0};
    /// While it has had peers and not been in sync.
    std::chrono::seconds outOfSync{0};
    /// While each answer has reported slow input and output.
    std::chrono::seconds slowDisk{0};
    /// While each answer has reported more load than the node can handle.
    std::chrono::seconds overloaded{0};
    /// Whether another node runs on this machine.
    bool hasCompany = false;
    WallClock::time_point now;
};

/// How a node ended without having been asked to, or why it did not start.
struct EndedNode
{
    /// The file that is run as the node. If it is a link, the target of that link.
    std::filesystem::path executable;
    bool executableExists = true;
    /// Whether it answered during its run. If so, it was able to read its configuration and store.
    bool hasAnswered = false;
    /// The last lines it printed.
    QString lastWords;
    /// Whether it was configured for the Mossgrid store rather than for NuDB.
    bool hasMossgrid = false;
};

/// Advice on a running node: of all the problems that apply, the one to fix first.
std::optional<Advice> adviceOn(const RunningNode &node);

/// Advice on a node that has ended by itself or could not be started.
std::optional<Advice> adviceOn(const EndedNode &node);

/// Whether the node has had time to fetch its lists of validators but has no valid one.
bool lacksValidatorLists(const QJsonObject &info);

/// The load of this machine as a multiple of the usual load, as the node reports it; 1 if it does
/// not.
double nodeLoad(const QJsonObject &info);

} // namespace tidewick
