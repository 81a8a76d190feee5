// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include "platform/process/ChildProcess.h"

#include <QByteArray>

namespace tidewick {

/// What a program left behind.
struct Outcome
{
    QByteArray output;
    QByteArray error;
    int status;
    bool signaled;

    bool operator==(const Outcome &) const = default;
};

/// Runs a program to its end, its standard input being empty.
Outcome runProgram(ChildSpec spec);

} // namespace tidewick
