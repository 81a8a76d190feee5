// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include "platform/process/ChildProcess.h"

#include <QByteArray>

namespace tidewick {

/// The output and exit status of a program.
struct Outcome
{
    QByteArray output;
    QByteArray error;
    int status;
    bool signaled;

    bool operator==(const Outcome &) const = default;
};

/// Runs a program until it exits, with empty standard input.
Outcome runProgram(ChildSpec spec);

} // namespace tidewick
