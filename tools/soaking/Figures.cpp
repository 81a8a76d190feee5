// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "Figures.h"

#include "bench/Measure.h"
#include "support/Processes.h"
#include "support/Sockets.h"

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <fstream>

namespace tidewick::soaking {

namespace {

constexpr double memoryLimitMiB = 2;
/// The timers and connections of the two kinds of requests to the node.
constexpr double comingAndGoing = 4;

/// One line of the table.
struct Line
{
    const char *name;
    double Figures::*value;
    /// The permitted increase from the beginning to the end.
    double slack;
    int decimals;
};

constexpr std::array lines{
    Line{"resident memory, MiB", &Figures::residentMiB, memoryLimitMiB, 1},
    Line{"  of it anonymous, MiB", &Figures::anonymousMiB, memoryLimitMiB, 1},
    Line{"open descriptors", &Figures::descriptors, comingAndGoing, 0},
    Line{"  of them lasting", &Figures::lastingDescriptors, 0, 0},
    Line{"threads", &Figures::threads, 0, 0},
    Line{"children", &Figures::children, 0, 0},
    Line{"zombies", &Figures::zombies, 0, 0},
};

double entriesOf(const std::string &folder)
{
    return double(std::distance(std::filesystem::directory_iterator(folder), {}));
}

double timersOf(pid_t process)
{
    double timers = 0;
    std::error_code error;
    for (const auto &entry :
         std::filesystem::directory_iterator("/proc/" + std::to_string(process) + "/fd")) {
        if (std::filesystem::read_symlink(entry.path(), error) == "anon_inode:[timerfd]")
            ++timers;
    }
    return timers;
}

Figures medianOf(const std::vector<Figures> &figures)
{
    Figures median;
    for (const Line &line : lines) {
        std::vector<double> values;
        values.reserve(figures.size());
        for (const Figures &one : figures)
            values.push_back(one.*line.value);
        std::sort(values.begin(), values.end());
        median.*line.value = values.at(values.size() / 2);
    }
    return median;
}

} // namespace

Figures Figures::of(pid_t process)
{
    const std::string folder = "/proc/" + std::to_string(process);
    Figures figures;
    figures.residentMiB = bench::residentMemory(process);
    figures.anonymousMiB = bench::anonymousMemory(process);
    figures.descriptors = entriesOf(folder + "/fd");
    figures.lastingDescriptors =
        figures.descriptors - timersOf(process) - Sockets::of(process).connections;
    figures.threads = entriesOf(folder + "/task");
    for (const pid_t child : childrenOf(process)) {
        ++figures.children;
        figures.zombies += runs(child) ? 0 : 1;
    }
    return figures;
}

void Record::setBeginning(const std::vector<Figures> &figures)
{
    m_beginning = medianOf(figures);
    m_all.insert(m_all.end(), figures.begin(), figures.end());
}

void Record::add(const Figures &figures)
{
    m_all.push_back(figures);
}

void Record::setEnd(const std::vector<Figures> &figures)
{
    m_end = medianOf(figures);
    m_all.insert(m_all.end(), figures.begin(), figures.end());
}

bool Record::print() const
{
    std::puts("| What | At the beginning | Least | Most | At the end | Allowed | Verdict |");
    std::puts("| --- | ---: | ---: | ---: | ---: | ---: | --- |");
    bool isGood = true;
    for (const Line &line : lines) {
        const auto [least, most] = std::minmax_element(
            m_all.begin(), m_all.end(), [&](const Figures &one, const Figures &other) {
                return one.*line.value < other.*line.value;
            });
        const double before = m_beginning.*line.value;
        const double after = m_end.*line.value;
        const bool isKept = after <= before + line.slack;
        isGood &= isKept;
        std::printf("| %s | %.*f | %.*f | %.*f | %.*f | %.*f | %s |\n", line.name, line.decimals,
                    before, line.decimals, (*least).*line.value, line.decimals, (*most).*line.value,
                    line.decimals, after, line.decimals, before + line.slack,
                    isKept ? "good" : "BAD");
    }
    return isGood;
}

} // namespace tidewick::soaking
