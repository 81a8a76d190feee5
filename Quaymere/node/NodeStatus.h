// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QString>

#include <optional>

namespace tidewick {

/// How far the node is, in the order of a usual run.
enum class Phase { Stopped, Starting, Bootstrapping, Connecting, Syncing, Full, Stopping, Error };

/// The phase's name for the debug log.
const char *phaseName(Phase phase);

/// One line about what keeps the node from following the network, or soon will, and what helps.
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
    /// Plain text on one line, at most some 500 characters.
    QString text;

    bool operator==(const Advice &) const = default;
};

/// What the controller publishes: everything that a menu, an icon or a window shows of the node, as
/// one value that can be compared. Texts are ready to be displayed, as plain text.
struct NodeStatus
{
    /// A figure that is not known: an en dash.
    static QString unknown() { return QStringLiteral("–"); }

    Phase phase = Phase::Stopped;
    /// One line under the phase; may be empty.
    QString detail;
    /// What the user should know beyond phase and detail, if anything.
    std::optional<Advice> advice;
    /// The whole text of the last error.
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
    /// What storage maintenance is at.
    std::optional<QString> storage;

    /// Whether server_info has been answered in this run.
    bool hasServerInfo = false;
    /// Whether a child process exists, whatever the phase.
    bool hasProcess = false;

    bool operator==(const NodeStatus &) const = default;
};

} // namespace tidewick
