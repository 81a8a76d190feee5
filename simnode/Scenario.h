// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include "simnode/Ending.h"
#include "simnode/RpcFault.h"
#include "simnode/Seconds.h"
#include "simnode/ServerWarning.h"
#include "simnode/StoreFault.h"
#include "simnode/StreamFault.h"
#include "simnode/ValidatorLists.h"

#include <QString>

#include <chrono>
#include <optional>
#include <set>
#include <stdexcept>

namespace tidewick::sim {

/// The node does not understand the scenario. The text is one line.
class ScenarioError : public std::runtime_error
{
    using std::runtime_error::runtime_error;
};

/// How a run deviates from its usual course. README.md lists the keys and their effects.
struct Scenario
{
    struct Range
    {
        int least;
        int most;
    };

    /// Simulated seconds per real second.
    double speed = 1;
    std::optional<QString> state;
    std::optional<int> peers;
    bool amendmentBlocked = false;
    /// SIGUSR1 ends the node's trouble.
    bool heals = false;
    ListState lists = ListState::Active;
    /// In addition to those that follow from the lists and from amendmentBlocked.
    std::set<ServerWarning> warnings;
    std::chrono::seconds clockOffset{0};
    std::optional<std::chrono::milliseconds> ioLatency;
    std::optional<double> load;
    std::optional<QString> maintenance;
    Range transactions{20, 200};
    /// In simulated time.
    Seconds ledgerInterval{4};

    /// The event that the scripted end follows.
    enum class Cue : char { Start, User, Stop };

    std::optional<Ending> ending;
    /// The time since the cue. Zero with the cue Start means before the store and the ports are
    /// opened.
    Seconds endingAfter{0};
    Cue endingCue = Cue::Start;
    StoreFault storeFault = StoreFault::None;
    bool closesStreams = false;
    bool listens = true;
    std::optional<Seconds> startDelay;
    Seconds stopDelay{0.4};
    bool stopHangs = false;
    bool ignoresSigterm = false;
    std::optional<Seconds> grandchild;

    qint64 outputBytes = 0;
    qint64 outputLines = 0;
    /// Printed while it runs.
    qint64 floodBytes = 0;

    RpcFaults faults;
    StreamFaults streamFaults;
    /// Whether the answer to get_counts has each of these objects.
    bool countsBootstrap = true;
    bool countsMaintenance = true;
    bool countsProcess = true;

    /// Reads "key=value" pairs, separated by whitespace or commas; "#" begins a comment. Throws
    /// ScenarioError.
    static Scenario parse(const QString &text);

    /// Reads the scenario from the environment variable TIDEWICK_SIMNODE, or from the file that it
    /// names after an "@". Unset, it means the usual course. Throws ScenarioError.
    static Scenario fromEnvironment();

    /// The state in which the node stays: the given one, or the one in which it waits for valid
    /// lists. Nothing if it does not stay in one.
    std::optional<QString> pinnedState() const;

    /// The same scenario, with no trouble in server_info.
    Scenario healed() const;

    /// The real time between two ledgers.
    Seconds realLedgerInterval() const { return ledgerInterval / speed; }
};

} // namespace tidewick::sim
