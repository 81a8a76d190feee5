// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include "platform/ProcessMemory.h"
#include "support/TestFiles.h"

#include <unistd.h>

namespace tidewick {

/// How far the memory of this process rises above where it was when this object was made.
class PeakMemory
{
public:
    PeakMemory()
    {
        writeFile("/proc/self/clear_refs", "5"); // the largest footprint is counted anew
        m_before = ProcessMemory::of(::getpid())->footprint;
    }

    /// The most so far, in bytes.
    qint64 grown() const { return ProcessMemory::of(::getpid())->peakFootprint - m_before; }

private:
    qint64 m_before;
};

} // namespace tidewick
