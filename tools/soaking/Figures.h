// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include <array>
#include <string>
#include <vector>

#include <sys/types.h>

namespace tidewick::soaking {

/// The resources that a process uses at one moment.
struct Figures
{
    double residentMiB = 0;
    /// The part that is not backed by files. How much of a process's files is resident depends on
    /// other processes, too.
    double anonymousMiB = 0;
    double descriptors = 0;
    /// The descriptors that do not come and go with each request to the node: all except timers and
    /// IP connections.
    double lastingDescriptors = 0;
    double threads = 0;
    double children = 0;
    double zombies = 0;

    static Figures of(pid_t process);
};

/// All figures of a run, and the verdict on them.
class Record
{
public:
    /// Sets the figures that the end is compared with: the medians of these.
    void setBeginning(const std::vector<Figures> &figures);
    void add(const Figures &figures);
    void setEnd(const std::vector<Figures> &figures);

    /// Prints a Markdown table. Returns false if a figure has grown more than permitted.
    bool print() const;

private:
    Figures m_beginning;
    std::vector<Figures> m_all;
    Figures m_end;
};

} // namespace tidewick::soaking
