// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include "simnode/Seconds.h"

#include <QList>
#include <QString>

#include <optional>

namespace tidewick::sim {

/// A fault of a connection to the WebSocket port. README.md describes each kind.
struct StreamFault
{
    enum class Kind {
        None,
        Silent,
        Refused,
        HangUp,
        NotHttp,
        Close,
        Drop,
        Reset,
        Pieces,
        Endless,
        Large,
        Pings,
        UnreadPings,
        Flood,
        Half,
        Mute,
        Garbage,
        Binary,
        NotUtf8,
    };

    Kind kind = Kind::None;
    /// For Close: the code, valid or not.
    quint16 closeCode = 0;

    /// Whether the fault replaces the handshake, so that no WebSocket is ever established.
    bool replacesHandshake() const { return kind >= Kind::Silent && kind <= Kind::NotHttp; }

    /// The name in a scenario.
    QString name() const;

    bool operator==(const StreamFault &) const = default;
};

/// The fault that a scenario calls by this name, such as "flood" or "close-1001".
std::optional<StreamFault> streamFaultNamed(QStringView name);

/// The faults of successive connections.
struct StreamFaults
{
    /// Each connection gets the next one; further connections get the last.
    QList<StreamFault> sequence;
    /// The real time from a handshake to the misbehaviour.
    Seconds after{0};
    /// The real time from the misbehaviour to the end of the connection, unless it ends earlier.
    std::optional<Seconds> duration;

    /// The fault of the connection with this number, counted from zero.
    StreamFault of(qsizetype connection) const;
};

} // namespace tidewick::sim
