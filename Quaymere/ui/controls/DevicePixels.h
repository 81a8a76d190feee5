// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QRectF>

class QPainter;

// Maps points to pixels of the screen. At a device pixel ratio of 1.5, lines of one point that
// begin between two pixels would otherwise differ in thickness.

namespace tidewick::DevicePixels {

/// Returns the rectangle with its edges moved to the nearest pixel edges.
QRectF snapped(const QPainter &painter, const QRectF &rect);

/// Returns the thickness, in points, of a line of one point rounded down to whole pixels, but at
/// least one.
qreal hairline(const QPainter &painter);

} // namespace tidewick::DevicePixels
