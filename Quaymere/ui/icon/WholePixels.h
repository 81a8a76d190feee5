// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QRectF>

class QPainter;
class QSvgRenderer;

/// Helps to draw badges without smearing their straight edges over two pixels each.
namespace tidewick::WholePixels {

/// Returns `rect` mapped by the translation and scaling that turn `from` into `to`.
QRectF carried(const QRectF &rect, const QRectF &from, const QRectF &to);

/// Draws a badge at about that place, so that its edges are on whole pixels. The drawing may mark
/// an element with the id "edges"; without one, its edges are its sides.
void draw(QPainter &painter, QSvgRenderer &badge, const QRectF &place);

} // namespace tidewick::WholePixels
