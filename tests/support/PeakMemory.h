// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include "platform/process/ProcessMemory.h"
#include "support/TestFiles.h"

#include <QtGlobal>

#include <unistd.h>

namespace tidewick {

/// Measures how far the memory use of this process rises above its level at construction.
class PeakMemory
{
public:
#if defined(TIDEWICK_SANITIZED)
    static constexpr bool hasSanitizer = true;
#else
    static constexpr bool hasSanitizer = false;
#endif

    PeakMemory()
    {
        writeFile("/proc/self/clear_refs", "5"); // resets the peak footprint
        m_before = ProcessMemory::of(::getpid())->footprint;
    }

    /// The highest rise so far, in bytes.
    qint64 grown() const
    {
        return ProcessMemory::of(::getpid())->peakFootprint - m_before;
    }

    /// Whether the rise is below a limit. Always true under a sanitizer, which keeps hundreds of
    /// megabytes of freed memory for a while and makes the measurement meaningless.
    bool isBelow(qint64 limit) const
    {
        if (hasSanitizer || grown() < limit)
            return true;
        qWarning("%lld bytes instead of %lld", grown(), limit);
        return false;
    }

private:
    qint64 m_before;
};

} // namespace tidewick
