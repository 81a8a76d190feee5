// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include "platform/process/ProcessMemory.h"
#include "support/TestFiles.h"

#include <QtGlobal>

#include <unistd.h>

namespace tidewick {

/// How far the memory of this process rises above where it was when this object was made.
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
        writeFile("/proc/self/clear_refs", "5"); // the largest footprint is counted anew
        m_before = ProcessMemory::of(::getpid())->footprint;
    }

    /// The most so far, in bytes.
    qint64 grown() const
    {
        return ProcessMemory::of(::getpid())->peakFootprint - m_before;
    }

    /// Whether that is below a limit. A sanitizer keeps what was freed for a while, hundreds of MB
    /// of it, so that under one there is nothing to be told.
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
