// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QFont>

/// Measures are given in points for text of 10 points and grow with larger text.
namespace tidewick::TextScale {

/// Returns a measure scaled for this font, in pixels at device pixel ratio 1.
int scaled(const QFont &font, int points);

/// Returns the font scaled by a factor, whether its size is set in points or pixels.
QFont resized(const QFont &font, qreal factor);

/// Returns the system's fixed-width font in the size that goes with a text in this font.
QFont fixedWidth(const QFont &font);

/// Returns the font's line height in whole pixels. The result is the same at every device pixel
/// ratio, even with Qt 6.8, which rounds the metrics of hinted fonts at ratio 1.
int fontHeight(const QFont &font);

/// Returns how far apostrophes and characters without accents extend beyond a line of this font,
/// above or below, in pixels. This is 0 for most fonts, but some report lines lower than their
/// glyphs. Main thread only.
int overhang(const QFont &font);

/// Returns where the baseline of a line of this font belongs, from the top of a box in whose middle
/// the line stands. Boxes with the same middle share a baseline, whatever their heights.
int baseline(const QFont &font, int boxHeight);

/// Returns the height of a line with room for that overhang both above and below.
int lineHeight(const QFont &font);

} // namespace tidewick::TextScale
