// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QStringView>

#include <optional>

namespace tidewick::sim {

/// The end of a process: with an exit status or by a signal.
struct Ending
{
    int number;
    bool signaled;
};

/// The exit status of a node that refuses to run with its configuration.
inline constexpr int refusalStatus = 255;

/// The number of the signal called "SEGV" or "SIGSEGV", or nothing for a name not supported here.
std::optional<int> signalNamed(QStringView name);

/// Ends this process by the signal's default action, without a core dump.
[[noreturn]] void dieOf(int signalNumber);

} // namespace tidewick::sim
