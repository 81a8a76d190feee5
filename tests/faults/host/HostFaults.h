// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include "faults/FaultTable.h"

namespace tidewick {

// The faults of the host, grouped by their cause.

std::vector<Fault> portFaults();
std::vector<Fault> folderFaults();
std::vector<Fault> diskFaults();
std::vector<Fault> defaultsFaults();
std::vector<Fault> clockFaults();
std::vector<Fault> kernelFaults();

} // namespace tidewick
