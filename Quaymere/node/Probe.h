// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QtGlobal>

#include <filesystem>
#include <functional>
#include <optional>
#include <string_view>

/// Queries about the host. No state.
namespace tidewick::Probe {

/// Whether something accepts TCP connections on 127.0.0.1 at the port. Returns immediately if the
/// connection is refused. A listener that does not complete the handshake within `timeoutMs`
/// milliseconds does not count.
bool portInUse(quint16 port, qint32 timeoutMs);

/// Space that an unprivileged user can still fill on the volume holding `location`, or its nearest
/// existing ancestor, in GB of 10^9 bytes. Nothing if the volume does not report it.
std::optional<double> freeGB(const std::filesystem::path &location);

/// Decides by an entry's name whether to leave it out, with everything below it.
using Skip = std::function<bool(std::string_view name)>;

/// Bytes allocated on disk to the regular files below `directory`, including hidden ones. Links are
/// not followed, except that `directory` itself may be one. Skips anything that cannot be read. 0
/// for a missing directory.
qint64 directorySize(const std::filesystem::path &directory, const Skip &skip = {});

} // namespace tidewick::Probe
