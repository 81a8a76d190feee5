// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QFont>

/// Measures are given in points for text of 10 points; with larger text they grow.
namespace tidewick::TextScale {

/// A measure for that font, in pixels of a screen of ratio 1.
int scaled(const QFont &font, int points);

/// The font in another size, however its own is given.
QFont resized(const QFont &font, qreal factor);

} // namespace tidewick::TextScale
