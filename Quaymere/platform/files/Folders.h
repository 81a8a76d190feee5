// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include <filesystem>
#include <string>

namespace tidewick::Folders {

/// Where applications keep their data: $XDG_DATA_HOME if absolute, else ~/.local/share.
/// Nothing is created here.
std::filesystem::path applicationSupport();

/// Where applications keep their settings: $XDG_CONFIG_HOME if absolute, else ~/.config.
std::filesystem::path configuration();

/// Where this application keeps its settings: "Tidewick" in configuration().
std::filesystem::path settings();

/// For what need not last: $TMPDIR, else /tmp. Throws as fromOperand for a relative $TMPDIR.
std::filesystem::path temporary();

/// A name in temporary() that nobody else has or can guess: the prefix, then 32 digits in upper
/// case with dashes. Nothing is created.
std::filesystem::path newTemporary(const std::string &prefix);

/// A lock of this user's: "<name>.lock" in $XDG_RUNTIME_DIR if that is absolute, else beside the
/// settings, in a folder made for it. Never in one open to all, where anybody could have taken the
/// name.
std::filesystem::path lockFile(const std::string &name);

/// A folder as named on a command line, made absolute against the current one: an absolute name
/// stays as it is but for slashes at its end; in a relative one dot segments are resolved, and the
/// empty name is the current folder. No "~", no percent decoding, no look at the disk.
/// Throws FileError where the current folder is no more.
std::filesystem::path fromOperand(const std::string &operand);

} // namespace tidewick::Folders
