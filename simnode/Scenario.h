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

/// A scenario that says nothing the node understands. The text is one line.
class ScenarioError : public std::runtime_error
{
    using std::runtime_error::runtime_error;
};

/// How a run departs from its usual course. README.md lists the keys and what they do.
struct Scenario
{
    struct Range
    {
        int least;
        int most;
    };

    /// Simulated seconds in a real one.
    double speed = 1;
    std::optional<QString> state;
    std::optional<int> peers;
    bool amendmentBlocked = false;
    /// With SIGUSR1 the node is well again.
    bool heals = false;
    ListState lists = ListState::Active;
    /// Beside those that follow from the lists and from amendmentBlocked.
    std::set<ServerWarning> warnings;
    std::chrono::seconds clockOffset{0};
    std::optional<std::chrono::milliseconds> ioLatency;
    std::optional<double> load;
    std::optional<QString> maintenance;
    Range transactions{20, 200};
    /// Simulated.
    Seconds ledgerInterval{4};

    /// What the scripted end follows.
    enum class Cue : char { Start, User, Stop };

    std::optional<Ending> ending;
    /// From the cue; zero from the start is before the store and the ports are opened.
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
    /// Each of these objects can be left out of the answer to get_counts.
    bool countsBootstrap = true;
    bool countsMaintenance = true;
    bool countsProcess = true;

    /// Reads "key=value" pairs with blanks, line ends or commas between; "#" begins a comment.
    /// Throws ScenarioError.
    static Scenario parse(const QString &text);

    /// The scenario in the environment variable TIDEWICK_SIMNODE, or in the file it names after an
    /// "@"; the usual course without one. Throws ScenarioError.
    static Scenario fromEnvironment();

    /// The state in which the node stays: the one given, or the one in which it waits for valid
    /// lists.
    std::optional<QString> pinnedState() const;

    /// The same course of a node whose server_info shows no trouble.
    Scenario healed() const;

    /// Real time between two ledgers.
    Seconds realLedgerInterval() const { return ledgerInterval / speed; }
};

} // namespace tidewick::sim
