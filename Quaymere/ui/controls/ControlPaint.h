// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QPainter>
#include <QPalette>

class QWidget;

// Painting shared by the widgets of card windows. They paint themselves, because styles differ in
// their use of the palette.

namespace tidewick::ControlPaint {

/// Paints a rounded rectangle with a hairline border, sharp at every device pixel ratio.
void box(QPainter &painter, const QRectF &rect, qreal radius, const QColor &fill,
         const QColor &border);

/// Paints the background of a button or picker, and marks it when it is under the pointer, pressed,
/// or has keyboard focus.
void control(QPainter &painter, const QWidget &widget, bool down);

/// Paints the focus ring just inside the widget's edge, in the colour that the widget's palette has
/// for it.
void outline(QPainter &painter, const QWidget &widget, qreal radius);

/// Paints the focus ring if the widget has the focus and the keyboard is in use.
void ring(QPainter &painter, const QWidget &widget, qreal radius);

/// The same, just inside a part of the widget.
void ring(QPainter &painter, const QWidget &widget, const QRectF &part, qreal radius);

/// Paints an arrow head of two lines that meet at `point`.
void arrow(QPainter &painter, const QPointF &point, const QPointF &oneEnd, const QPointF &otherEnd,
           const QColor &color, qreal thickness);

/// Paints a text on one line in the middle of a rectangle.
void centered(QPainter &painter, const QRect &rect, const QString &text);

/// Paints a text on one line of a rectangle, indented by `start` from the left edge, or from the
/// right edge in a right-to-left layout.
void line(QPainter &painter, const QRect &rect, int start, Qt::LayoutDirection direction,
          const QString &text);

} // namespace tidewick::ControlPaint
