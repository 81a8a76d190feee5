// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QRectF>

class QPainter;

// Points and the pixels of the screen: at a ratio of 1.5, lines of one point that begin between two
// pixels would differ in thickness.

namespace tidewick::DevicePixels {

/// The rectangle with its edges moved to the nearest edges of pixels.
QRectF snapped(const QPainter &painter, const QRectF &rect);

/// The thickness in points of a line of one point, held to whole pixels.
qreal hairline(const QPainter &painter);

} // namespace tidewick::DevicePixels
