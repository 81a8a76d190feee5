// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

namespace tidewick::Descriptors {

/// Returns whether the process can open as many more descriptors as the program needs while it
/// runs. Raises the soft limit for that, as far as the hard limit allows. If that is not enough,
/// prints the reason on standard error. Call it before anything that would abort the program for
/// lack of a descriptor.
bool suffice();

} // namespace tidewick::Descriptors
