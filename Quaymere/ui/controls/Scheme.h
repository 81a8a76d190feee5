// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

namespace tidewick {

/// The colours that the desktop asks of windows.
struct Scheme
{
    bool dark = false;
    /// With nothing fainter than texts and lines have to be for weak eyes.
    bool highContrast = false;

    bool operator==(const Scheme &) const = default;
};

} // namespace tidewick
