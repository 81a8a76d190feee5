// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

// Part of builds with the thread sanitizer only. QProcess makes its child share this process's
// memory until it runs the other program, which the runtime of clang 14's sanitizer does not
// survive; here the child gets a copy.

#include <cstdarg>

#include <sched.h>
#include <sys/types.h>

/// The sanitizer's own, under the name it has.
// NOLINTNEXTLINE(bugprone-reserved-identifier)
extern "C" int __interceptor_clone(int (*function)(void *), void *stack, int flags, void *argument,
                                   pid_t *parentsId, void *threadStorage, pid_t *childsId);

/// In place of the C library's and of the sanitizer's.
// NOLINTNEXTLINE(readability-inconsistent-declaration-parameter-name): its names are reserved ones
extern "C" int clone(int (*function)(void *), void *stack, int flags, void *argument, ...) noexcept
{
    std::va_list list;
    va_start(list, argument);
    auto *const parentsId = va_arg(list, pid_t *);
    auto *const threadStorage = va_arg(list, void *);
    auto *const childsId = va_arg(list, pid_t *);
    va_end(list);
    return __interceptor_clone(function, stack, flags & ~(CLONE_VM | CLONE_VFORK), argument,
                               parentsId, threadStorage, childsId);
}
