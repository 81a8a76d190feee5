// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QtGlobal>

#include <filesystem>
#include <functional>
#include <optional>
#include <string_view>

/// Looks at the host. No state.
namespace tidewick::Probe {

/// Whether something accepts TCP connections on 127.0.0.1 at the port. A refusal answers at once; a
/// listener that does not complete the handshake counts as none after `timeoutMs` milliseconds.
bool portInUse(quint16 port, qint32 timeoutMs);

/// Space that an unprivileged user can still fill on the volume holding `location`, or its nearest
/// existing ancestor, in GB of 10^9 bytes. Nothing when the volume does not tell.
std::optional<double> freeGB(const std::filesystem::path &location);

/// Says of an entry's name whether to leave it out, with all that lies below it.
using Skip = std::function<bool(std::string_view name)>;

/// Bytes allocated on disk to the regular files below `directory`; hidden ones count, links are not
/// followed (other than `directory` itself being one), and what cannot be read is passed over. 0
/// for a missing directory.
qint64 directorySize(const std::filesystem::path &directory, const Skip &skip = {});

} // namespace tidewick::Probe
