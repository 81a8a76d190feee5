// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

// Used only in builds with the thread sanitizer. QProcess makes its child share this process's
// memory until it executes the other program, which crashes the sanitizer runtime of clang 14. This
// replacement gives the child a copy instead.

#include <cstdarg>

#include <sched.h>
#include <sys/types.h>

/// The sanitizer's own implementation, under its actual name.
// NOLINTNEXTLINE(bugprone-reserved-identifier)
extern "C" int __interceptor_clone(int (*function)(void *), void *stack, int flags, void *argument,
                                   pid_t *parentsId, void *threadStorage, pid_t *childsId);

/// Replaces both the C library's and the sanitizer's clone().
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
