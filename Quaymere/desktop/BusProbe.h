// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QByteArray>

#include <chrono>

/// Checks whether a message bus can be used at all.
namespace tidewick::BusProbe {

/// Returns false if the bus at this address accepts connections but does not answer within the
/// limit. Checks sockets with a path or an abstract name. For other addresses, returns true and
/// relies on the D-Bus library to cope.
bool answers(const QByteArray &address, std::chrono::milliseconds limit);

/// Disables the session bus in this process if the bus is silent: the D-Bus library would wait for
/// it forever. Call before anything uses the bus; waits at most 10 s.
void avoidIfSilent();

} // namespace tidewick::BusProbe
