// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QByteArray>

#include <functional>
#include <vector>

namespace tidewick {

class FaultRun;

/// One row of the campaign: a fault, the expected behaviour of the program, and the trial that
/// demonstrates it. The trial reports observations and expectations through its FaultRun.
struct Fault
{
    QByteArray name;
    QByteArray expected;
    std::function<void(FaultRun &run)> trial;
    /// Takes minutes of real time; runs only with "--long".
    bool isLong = false;
};

/// The main function of a group. Runs the trials of its faults, several at a time, each in a
/// separate process with its own home and loopback network, and then checks the invariants of
/// FaultRun. Prints a row of a Markdown table for each: group, fault, expectation, observation,
/// verdict. The exit status says whether all rows hold. Arguments: "--long" also runs the long
/// trials; "--only TEXT" runs only those with this text in their name and shows the output of their
/// processes.
int runFaults(const char *group, const std::vector<Fault> &faults, int argc, char **argv);

} // namespace tidewick
