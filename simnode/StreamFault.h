// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include "simnode/Seconds.h"

#include <QList>
#include <QString>

#include <optional>

namespace tidewick::sim {

/// What a connection to the WebSocket port can meet; README.md says what each kind does.
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
    /// With Close: the code, right or wrong.
    quint16 closeCode = 0;

    /// It comes in place of the handshake, so that there never is a WebSocket.
    bool replacesHandshake() const { return kind >= Kind::Silent && kind <= Kind::NotHttp; }

    /// As a scenario names it.
    QString name() const;

    bool operator==(const StreamFault &) const = default;
};

/// The misbehaviour of this name in a scenario, such as "flood" or "close-1001".
std::optional<StreamFault> streamFaultNamed(QStringView name);

/// Who meets what.
struct StreamFaults
{
    /// Each connection meets the next one, and all later ones the last.
    QList<StreamFault> sequence;
    /// Real time from a handshake to the misbehaviour.
    Seconds after{0};
    /// Real time from the misbehaviour to the end of the connection, if nothing ends it before.
    std::optional<Seconds> duration;

    /// For the connection of this number, counted from zero.
    StreamFault of(qsizetype connection) const;
};

} // namespace tidewick::sim
