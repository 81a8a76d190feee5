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

/// The height of a line as the font says, in whole pixels: the same on screens of any ratio, also
/// with Qt 6.8, which rounds the metrics of hinted fonts at ratio 1.
int fontHeight(const QFont &font);

/// How far letters without accents, and apostrophes, reach beyond a line of that font, above or
/// below, in pixels: 0 for most fonts, but some say of their lines that they are lower than their
/// letters. Main thread only.
int overhang(const QFont &font);

/// The height that a line of such letters takes where it is centred.
int lineHeight(const QFont &font);

} // namespace tidewick::TextScale
