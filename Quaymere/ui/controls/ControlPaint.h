// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QPainter>
#include <QPalette>

class QWidget;

// What the widgets of the windows made of cards have in common, drawn by ourselves: styles differ
// in what they take from a palette.

namespace tidewick::ControlPaint {

/// A rounded rectangle with a hairline as its border, sharp at every ratio of the screen.
void box(QPainter &painter, const QRectF &rect, qreal radius, const QColor &fill,
         const QColor &border);

/// The ground of a button or picker, with what shows that it is under the pointer, is pressed, or
/// has the focus of somebody who uses the keyboard.
void control(QPainter &painter, const QWidget &widget, bool down);

/// The line just within the edge of what has the focus, in the widget's own colour for it.
void outline(QPainter &painter, const QWidget &widget, qreal radius);

/// That line where somebody uses the keyboard.
void ring(QPainter &painter, const QWidget &widget, qreal radius);

/// An arrow head of two lines: its point at the first place, its ends at the other two.
void arrow(QPainter &painter, const QPointF &point, const QPointF &oneEnd, const QPointF &otherEnd,
           const QColor &color, qreal thickness);

/// A text on one line of a rectangle, beginning that far from where the interface begins.
void line(QPainter &painter, const QRect &rect, int start, Qt::LayoutDirection direction,
          const QString &text);

} // namespace tidewick::ControlPaint
