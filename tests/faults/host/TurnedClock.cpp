// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

// When preloaded, shifts the time of day by the number of seconds in the file named by
// TIDEWICK_CLOCK_TURN, which is read at each query. The other clocks are left alone.

#include <cstdlib>
#include <ctime>

#include <fcntl.h>
#include <sys/syscall.h>
#include <sys/time.h>
#include <unistd.h>

namespace {

time_t turn()
{
    const char *file = std::getenv("TIDEWICK_CLOCK_TURN");
    const int descriptor = file != nullptr ? ::open(file, O_RDONLY | O_CLOEXEC) : -1;
    if (descriptor < 0)
        return 0;
    char text[32] = {};
    const ssize_t count = ::read(descriptor, text, sizeof text - 1);
    ::close(descriptor);
    return count > 0 ? std::strtol(text, nullptr, 10) : 0;
}

bool isTimeOfDay(clockid_t clock)
{
    return clock == CLOCK_REALTIME || clock == CLOCK_REALTIME_COARSE;
}

} // namespace

// The C library uses reserved names for its parameters.
// NOLINTBEGIN(readability-inconsistent-declaration-parameter-name)
extern "C" {

int clock_gettime(clockid_t clock, timespec *time) noexcept
{
    const auto result = static_cast<int>(::syscall(SYS_clock_gettime, clock, time));
    if (result == 0 && isTimeOfDay(clock))
        time->tv_sec += turn();
    return result;
}

int gettimeofday(timeval *time, void *) noexcept
{
    timespec precise{};
    const int result = clock_gettime(CLOCK_REALTIME, &precise);
    time->tv_sec = precise.tv_sec;
    time->tv_usec = precise.tv_nsec / 1000;
    return result;
}

time_t time(time_t *result) noexcept
{
    timespec precise{};
    clock_gettime(CLOCK_REALTIME, &precise);
    if (result != nullptr)
        *result = precise.tv_sec;
    return precise.tv_sec;
}

} // extern "C"
// NOLINTEND(readability-inconsistent-declaration-parameter-name)
