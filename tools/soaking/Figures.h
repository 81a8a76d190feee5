// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include <array>
#include <string>
#include <vector>

#include <sys/types.h>

namespace tidewick::soaking {

/// What a process takes up at a moment.
struct Figures
{
    double residentMiB = 0;
    /// Of it what is of no file. How much of its files is resident depends on others, too.
    double anonymousMiB = 0;
    double descriptors = 0;
    /// Of them those that do not come and go with each question to the node: no timers, no
    /// connections over IP.
    double lastingDescriptors = 0;
    double threads = 0;
    double children = 0;
    double zombies = 0;

    static Figures of(pid_t process);
};

/// All figures of a run, and what they come to.
class Record
{
public:
    /// Those that the later ones are held against: the medians of these.
    void setBeginning(const std::vector<Figures> &figures);
    void add(const Figures &figures);
    void setEnd(const std::vector<Figures> &figures);

    /// A table in Markdown. False when the end is not as the beginning was.
    bool print() const;

private:
    Figures m_beginning;
    std::vector<Figures> m_all;
    Figures m_end;
};

} // namespace tidewick::soaking
