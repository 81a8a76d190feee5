// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QStringView>

#include <optional>

namespace tidewick::sim {

/// How a process ends: with an exit status or by a signal.
struct Ending
{
    int number;
    bool signaled;
};

/// The exit status of a node that refuses to run as it is configured.
inline constexpr int refusalStatus = 255;

/// The number behind "SEGV" or "SIGSEGV"; nothing for a name that is not in use here.
std::optional<int> signalNamed(QStringView name);

/// Ends this process by the default effect of the signal, leaving no core file.
[[noreturn]] void dieOf(int signalNumber);

} // namespace tidewick::sim
