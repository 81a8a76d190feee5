// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include <utility>

#if defined(__has_feature)
#if __has_feature(thread_sanitizer)
#define TIDEWICK_THREAD_SANITIZER
#include <sanitizer/tsan_interface.h>
#endif
#endif

namespace tidewick {

/// A function that is passed once to another thread through one of Qt's queues and called there.
/// The queue's locks guarantee that everything done before the handover happens before the call.
/// ThreadSanitizer does not see those locks, because Qt is not built for it, so this class reports
/// that order to it. Otherwise it adds nothing.
template <typename Function>
class Handover
{
public:
    explicit Handover(Function function) : m_function(std::move(function)) {}
#if defined(TIDEWICK_THREAD_SANITIZER)
    // Putting the function into the queue's memory is the last thing done on this thread.
    Handover(const Handover &other) : m_function(other.m_function)
    {
        __tsan_release(&s_order);
    }
    Handover(Handover &&other) noexcept : m_function(std::move(other.m_function))
    {
        __tsan_release(&s_order);
    }
    Handover &operator=(const Handover &) = delete;
    Handover &operator=(Handover &&) = delete;
    // A function that the event loop never reached is destroyed in the queue without being called.
    ~Handover()
    {
        __tsan_acquire(&s_order);
    }
#endif

    void operator()()
    {
#if defined(TIDEWICK_THREAD_SANITIZER)
        __tsan_acquire(&s_order);
#endif
        m_function();
    }

private:
#if defined(TIDEWICK_THREAD_SANITIZER)
    static inline char s_order = 0;
#endif
    Function m_function;
};

} // namespace tidewick
