// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QString>

#include <optional>

namespace tidewick {

/// The node's phase, in the order of a usual run.
enum class Phase { Stopped, Starting, Bootstrapping, Connecting, Syncing, Full, Stopping, Error };

/// The phase's name for the debug log.
const char *phaseName(Phase phase);

/// One line about a problem that keeps the node from following the network, or soon will, and its
/// remedy.
struct Advice
{
    enum class Cause : char {
        NoAnswer,
        AmendmentBlocked,
        WrongClock,
        NoPeers,
        NoValidatorList,
        OtherNode,
        TooSlow,
        UpgradeNeeded,
        ListExpires,
        OtherWarning,
        NodeMissing,
        StoreDamaged,
        OtherStore,
    };

    Cause cause;
    /// Plain text on one line, at most about 500 characters.
    QString text;

    bool operator==(const Advice &) const = default;
};

/// The state that the controller publishes: everything about the node that a menu, an icon or a
/// window shows, as one comparable value. Texts are plain text, ready to be displayed.
struct NodeStatus
{
    /// The text for a figure that is not known: an en dash.
    static QString unknown() { return QStringLiteral("–"); }

    Phase phase = Phase::Stopped;
    /// One line under the phase; may be empty.
    QString detail;
    /// What the user should know beyond phase and detail, if anything.
    std::optional<Advice> advice;
    /// The full text of the last error.
    std::optional<QString> errorText;

    QString ledger = unknown();
    std::optional<qint64> ledgerSeq;
    std::optional<qint64> peers;
    QString uptime = unknown();
    QString memory = unknown();
    /// Time until an automatic stop, if one is due.
    std::optional<QString> timeLeft;
    QString storeSize = unknown();
    QString freeSpace = unknown();
    /// The state of storage maintenance.
    std::optional<QString> storage;

    /// Whether server_info has been answered in this run.
    bool hasServerInfo = false;
    /// Whether a child process exists, whatever the phase.
    bool hasProcess = false;

    bool operator==(const NodeStatus &) const = default;
};

} // namespace tidewick
