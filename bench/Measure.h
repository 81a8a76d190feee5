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

/// The median of the values.
Duration median(std::vector<Duration> values);

/// The times of two pieces of work that ran alternately, so that other load on the machine affects
/// both.
struct Pair
{
    Duration first;
    Duration second;

    double ratio() const { return first / second; }
};

/// The medians of the wall time over this number of rounds.
Pair measure(int rounds, const std::function<void()> &first, const std::function<void()> &second);

/// The processor time, user and system, of running a program to its end. Its output is discarded.
Duration processorTime(ChildSpec spec);

/// The processor time so far of a process and its ended children, excluding running ones.
Duration processorTimeSoFar(pid_t process);

/// A process's resident memory in MiB, including what it shares with others.
double residentMemory(pid_t process);

/// A process's share of resident memory in MiB: memory shared with others counts proportionally.
double memory(pid_t process);

/// The private memory that the process has written, in MiB, which would be free without it.
double writtenMemory(pid_t process);

/// The process's resident memory that is not backed by a file, such as heap and stacks, in MiB,
/// shared or not.
double anonymousMemory(pid_t process);

/// Prints one line of the table: what was compared, both figures, their ratio and its goal.
void print(const std::string &what, const Pair &pair, const std::string &goal);

/// The same for two numbers of instructions.
void printCounts(const std::string &what, double first, double second, const std::string &goal);

/// The same for two amounts of memory in MiB.
void printMemory(const std::string &what, double first, double second, const std::string &goal);

} // namespace tidewick::bench
