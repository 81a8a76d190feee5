// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include "simnode/Seconds.h"

#include <QString>
#include <QStringList>

#include <map>
#include <optional>

namespace tidewick::sim {

/// The progress of a new node's download of the ledger.
struct Bootstrap
{
    bool enabled;
    QString phase;
    int completedPasses;
    int ledgersBehind;
    qint64 storedBytes;
};

/// The condition of the node at one moment of its course.
struct Moment
{
    QString state;
    Seconds inState;
    /// The earliest states: the node has not heard from the network yet.
    bool waitsForNetwork;
    /// Ledgers are validated from the state "tracking" on.
    bool validates;
    /// How long the node has been in sync, or nothing if it is not.
    std::optional<Seconds> full;
    int peers;
    Bootstrap bootstrap;
};

/// The figures that a node reports for one of its five coarse states.
struct StateAccount
{
    Seconds duration{0};
    int transitions = 0;
};

/// The course of a node that joins the network: from no peers to "full" in half a minute, slowly
/// enough to watch. A value; everything follows from the simulated time since the ports were
/// opened.
class Course
{
public:
    /// The kind of node: one that streams the ledger when it is new, or a stock one, which knows
    /// only the coarse states.
    enum class Kind { Streaming, Stock };

    /// A pinned state, of any name, and a pinned number of peers apply from the beginning.
    explicit Course(std::optional<QString> pinnedState = std::nullopt,
                    std::optional<int> pinnedPeers = std::nullopt, Kind kind = Kind::Streaming);

    /// The node's condition, `elapsed` after its ports were opened.
    Moment at(Seconds elapsed) const;

    /// The states that the node has been in until then, in order, including the current one.
    QStringList statesUntil(Seconds elapsed) const;

    /// The time spent in each coarse state until then, by the state's name.
    std::map<QString, StateAccount> accounts(Seconds elapsed) const;

private:
    std::optional<QString> m_pinnedState;
    std::optional<int> m_pinnedPeers;
    Kind m_kind;
};

} // namespace tidewick::sim
