// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QByteArray>

#include <functional>
#include <vector>

namespace tidewick {

class FaultRun;

/// One row of the campaign: a fault, what the program has to do about it, and the trial that shows
/// it. The trial says what it saw and what it expects through its FaultRun.
struct Fault
{
    QByteArray name;
    QByteArray expected;
    std::function<void(FaultRun &run)> trial;
    /// Takes minutes of real time, and is left to the long form.
    bool isLong = false;
};

/// The main function of a group: tries its faults, several side by side, each in a process with a
/// home and a loopback network of its own, and prints a row of a Markdown table for each: group,
/// fault, what is expected, what was seen, verdict. After each the invariants of FaultRun are
/// checked. The exit status says whether all rows hold. Arguments: "--long" tries the long ones,
/// too; "--only TEXT" those with this text in their name, and lets their processes speak.
int runFaults(const char *group, const std::vector<Fault> &faults, int argc, char **argv);

} // namespace tidewick
