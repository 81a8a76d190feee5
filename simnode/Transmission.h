// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include "simnode/HttpMessage.h"
#include "simnode/RpcFault.h"

namespace tidewick::sim {

/// How a response is sent over the connection.
enum class Delivery {
    Whole,
    /// Half of the body, then the connection is closed.
    Half,
    /// Half of the body, then the connection is reset.
    Reset,
    /// The body at one byte a second.
    Drip,
    /// The whole response at one byte a second.
    SlowHeader,
    /// `Transmission::filler` follows, with its length announced.
    Filler,
    /// `Transmission::filler` follows in chunks.
    ChunkedFiller,
    /// `Transmission::filler` is the value of the last header, which is never completed.
    HeaderFiller,
    /// Nothing is ever sent.
    Never,
};

/// A response and how to send it.
struct Transmission
{
    HttpResponse response;
    Delivery delivery = Delivery::Whole;
    /// The number of meaningless bytes.
    qint64 filler = 0;
    /// Whether the connection is closed after the response, unannounced.
    bool closes = false;
};

/// The response to send for a fault, made from the usual one or in place of it. `usual` matters
/// only for faults that use it. A redirect leads to `redirectPort` on loopback.
Transmission transmissionFor(RpcFault fault, const HttpResponse &usual, quint16 redirectPort);

} // namespace tidewick::sim
