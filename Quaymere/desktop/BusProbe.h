// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QByteArray>

#include <chrono>

/// Whether the session bus can be used at all.
namespace tidewick::BusProbe {

/// False when the bus at this address takes connections and does not say a word in time. Looks at
/// sockets with a path or an abstract name; of other addresses it is taken that the library copes.
bool answers(const QByteArray &address, std::chrono::milliseconds limit);

/// Does without the session bus in this process if that is silent: the library would wait for it
/// without end. Call before anything uses the bus; waits 10 s at most.
void avoidIfSilent();

} // namespace tidewick::BusProbe
