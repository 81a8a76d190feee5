// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include "simnode/Seconds.h"

#include <QString>
#include <QStringList>

#include <map>
#include <optional>

namespace tidewick::sim {

/// How far a newcomer's download of the ledger is.
struct Bootstrap
{
    bool enabled;
    QString phase;
    int completedPasses;
    int ledgersBehind;
    qint64 storedBytes;
};

/// How the node is at one moment of its course.
struct Moment
{
    QString state;
    Seconds inState;
    /// The earliest states: the network has not been heard of.
    bool waitsForNetwork;
    /// Ledgers are validated from the state "tracking" on.
    bool validates;
    /// How long the node has been in sync; nothing before.
    std::optional<Seconds> full;
    int peers;
    Bootstrap bootstrap;
};

/// What a node reports for one of its five coarse states.
struct StateAccount
{
    Seconds duration{0};
    int transitions = 0;
};

/// What becomes of a node that joins the network: from no peers to "full" in half a minute, at a
/// pace that lets one watch. A value; everything follows from the simulated time since the ports
/// were opened.
class Course
{
public:
    /// Which node it is: one that streams the ledger when it is new, or a stock one, which knows
    /// the coarse states alone.
    enum class Kind { Streaming, Stock };

    /// A pinned state, of any name, holds from the beginning; so does a number of peers.
    explicit Course(std::optional<QString> pinnedState = std::nullopt,
                    std::optional<int> pinnedPeers = std::nullopt, Kind kind = Kind::Streaming);

    /// How the node is so long after its ports were opened.
    Moment at(Seconds elapsed) const;

    /// The states the node has been in until then, in order, with the one it is in.
    QStringList statesUntil(Seconds elapsed) const;

    /// Time spent in each coarse state until then, by the state's name.
    std::map<QString, StateAccount> accounts(Seconds elapsed) const;

private:
    std::optional<QString> m_pinnedState;
    std::optional<int> m_pinnedPeers;
    Kind m_kind;
};

} // namespace tidewick::sim
