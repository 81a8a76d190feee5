// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "bench/Measure.h"

#include <algorithm>
#include <cstdio>
#include <fstream>
#include <sstream>

#include <fcntl.h>
#include <sys/resource.h>
#include <unistd.h>

namespace tidewick::bench {

namespace {

using Clock = std::chrono::steady_clock;

Duration timeOf(const std::function<void()> &work)
{
    const Clock::time_point begin = Clock::now();
    work();
    return Clock::now() - begin;
}

/// The processor time of all child processes that have ended.
Duration childrensTime()
{
    rusage usage{};
    ::getrusage(RUSAGE_CHILDREN, &usage);
    const auto seconds = [](const timeval &time) {
        return std::chrono::seconds(time.tv_sec) + std::chrono::microseconds(time.tv_usec);
    };
    return seconds(usage.ru_utime) + seconds(usage.ru_stime);
}

/// One of the kernel's figures for a process's memory, in MiB.
double inMemory(pid_t process, const std::string &line)
{
    std::ifstream rollup("/proc/" + std::to_string(process) + "/smaps_rollup");
    std::string word;
    double found = 0;
    while (rollup >> word) {
        double value = 0;
        if (word == line && rollup >> value)
            found = value / 1024;
    }
    return found;
}

} // namespace

Duration median(std::vector<Duration> values)
{
    const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
    std::nth_element(values.begin(), middle, values.end());
    return *middle;
}

Pair measure(int rounds, const std::function<void()> &first, const std::function<void()> &second)
{
    std::vector<Duration> firstTimes;
    std::vector<Duration> secondTimes;
    for (int round = 0; round < rounds; ++round) {
        firstTimes.push_back(timeOf(first));
        secondTimes.push_back(timeOf(second));
    }
    return {median(firstTimes), median(secondTimes)};
}

Duration processorTime(ChildSpec spec)
{
    const UniqueDescriptor nothing(::open("/dev/null", O_RDWR | O_CLOEXEC));
    spec.standardInput = spec.standardOutput = spec.standardError = nothing.get();
    const Duration before = childrensTime();
    if (ChildProcess::start(spec)->wait().status != 0)
        qFatal("%s failed", spec.executable.c_str());
    return childrensTime() - before;
}

Duration processorTimeSoFar(pid_t process)
{
    std::ifstream file("/proc/" + std::to_string(process) + "/stat");
    std::stringstream stat;
    stat << file.rdbuf();
    std::istringstream fields(stat.str().substr(stat.str().rfind(')') + 2));
    std::string skipped;
    for (int field = 3; field < 14; ++field)
        fields >> skipped;
    double ticks = 0;
    for (int field = 0; field < 4; ++field) {
        double value = 0;
        fields >> value;
        ticks += value;
    }
    return Duration(ticks / double(::sysconf(_SC_CLK_TCK)));
}

double residentMemory(pid_t process)
{
    return inMemory(process, "Rss:");
}

double memory(pid_t process)
{
    return inMemory(process, "Pss:");
}

double writtenMemory(pid_t process)
{
    return inMemory(process, "Private_Dirty:");
}

double anonymousMemory(pid_t process)
{
    return inMemory(process, "Anonymous:");
}

void print(const std::string &what, const Pair &pair, const std::string &goal)
{
    std::printf("%-58s %10.3f ms %10.3f ms %8.2f   %s\n", what.c_str(), pair.first.count() * 1e3,
                pair.second.count() * 1e3, pair.ratio(), goal.c_str());
    std::fflush(stdout);
}

void printCounts(const std::string &what, double first, double second, const std::string &goal)
{
    std::printf("%-58s %11.3f M %11.3f M %8.2f   %s\n", what.c_str(), first / 1e6, second / 1e6,
                first / second, goal.c_str());
    std::fflush(stdout);
}

void printMemory(const std::string &what, double first, double second, const std::string &goal)
{
    std::printf("%-58s %9.1f MiB %9.1f MiB %8.2f   %s\n", what.c_str(), first, second,
                first / second, goal.c_str());
    std::fflush(stdout);
}

} // namespace tidewick::bench
