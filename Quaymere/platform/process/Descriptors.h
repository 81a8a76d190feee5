// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

namespace tidewick::Descriptors {

/// Whether as many more files can be open at a time as the program takes while it runs; its own
/// limit is raised for that as far as it may. Says why not on standard error. To be asked before
/// what would end the program the hard way for want of one.
bool suffice();

} // namespace tidewick::Descriptors
