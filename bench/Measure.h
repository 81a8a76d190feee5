// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include "platform/process/ChildProcess.h"

#include <chrono>
#include <functional>
#include <string>
#include <vector>

namespace tidewick::bench {

using Duration = std::chrono::duration<double>;

/// The middle of the values.
Duration median(std::vector<Duration> values);

/// The times of two pieces of work, by turns, so that whatever else the machine does falls on both.
struct Pair
{
    Duration first;
    Duration second;

    double ratio() const { return first / second; }
};

/// Medians of the wall time over so many rounds.
Pair measure(int rounds, const std::function<void()> &first, const std::function<void()> &second);

/// Processor time, user and system, of running a program to its end with its output discarded.
Duration processorTime(ChildSpec spec);

/// Of a process and of its children that have ended, without the running ones.
Duration processorTimeSoFar(pid_t process);

/// All of a process's memory that is resident, in MiB, what it shares with others included.
double residentMemory(pid_t process);

/// Resident memory that is the process's own, in MiB: what it shares counts in proportion.
double memory(pid_t process);

/// The part of it that the process has written, and that would not be there without it.
double writtenMemory(pid_t process);

/// The part of it that is of no file, such as heap and stacks, shared or not.
double anonymousMemory(pid_t process);

/// One line of the table: what was compared, both figures, the ratio and the goal for it.
void print(const std::string &what, const Pair &pair, const std::string &goal);

/// The same for two numbers of instructions.
void printCounts(const std::string &what, double first, double second, const std::string &goal);

/// The same for two amounts of memory in MiB.
void printMemory(const std::string &what, double first, double second, const std::string &goal);

} // namespace tidewick::bench
