// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include "simnode/HttpMessage.h"
#include "simnode/RpcFault.h"

namespace tidewick::sim {

/// How a response goes over the connection.
enum class Delivery {
    Whole,
    /// Half of the body, then the connection is closed.
    Half,
    /// Half of the body, then the connection is reset.
    Reset,
    /// The body by one byte a second.
    Drip,
    /// All of it by one byte a second.
    SlowHeader,
    /// `Transmission::filler` follows, its length announced.
    Filler,
    /// `Transmission::filler` follows in chunks.
    ChunkedFiller,
    /// `Transmission::filler` is the last header, which never ends.
    HeaderFiller,
    /// Nothing is sent, ever.
    Never,
};

/// A response and how to send it.
struct Transmission
{
    HttpResponse response;
    Delivery delivery = Delivery::Whole;
    /// Bytes without a meaning.
    qint64 filler = 0;
    /// The connection is closed after the response, without having announced it.
    bool closes = false;
};

/// What is sent instead of the usual response, or made of it: `usual` has only to be right for
/// kinds that use it. The redirection goes to `redirectPort` on loopback.
Transmission transmissionFor(RpcFault fault, const HttpResponse &usual, quint16 redirectPort);

} // namespace tidewick::sim
