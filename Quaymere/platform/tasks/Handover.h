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

/// A function that goes to another thread through a queue of Qt's, once, and is called there. The
/// queue's locks see to it that what was done before is done by then. The thread sanitizer knows
/// nothing of them, since Qt is not built for it, and has to be told; otherwise this adds nothing.
template <typename Function>
class Handover
{
public:
    explicit Handover(Function function) : m_function(std::move(function)) {}
#if defined(TIDEWICK_THREAD_SANITIZER)
    // The last thing done here is to put the function into the queue's own memory.
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
    // What the event loop no longer came to is destroyed in the queue, uncalled.
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
