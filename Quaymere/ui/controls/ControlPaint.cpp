// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "ui/controls/ControlPaint.h"

#include "ui/controls/ControlMetrics.h"
#include "ui/controls/DevicePixels.h"
#include "ui/controls/TextScale.h"

#include <QWidget>

#include <array>

namespace tidewick::ControlPaint {

namespace {

void outline(QPainter &painter, const QWidget &widget, const QRectF &part, qreal radius)
{
    constexpr qreal thickness = 1.5;
    const qreal inset = thickness / 2;
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(widget.palette().link(), thickness));
    painter.setBrush(Qt::NoBrush);
    painter.drawRoundedRect(part.adjusted(inset, inset, -inset, -inset), radius - inset,
                            radius - inset);
    painter.restore();
}

/// In the reading direction of the text itself, which may not be that of the interface.
void textAt(QPainter &painter, qreal left, const QRect &rect, const QString &text)
{
    painter.save();
    painter.setLayoutDirection(Qt::LayoutDirectionAuto);
    painter.drawText(QPointF(left, rect.top() + TextScale::baseline(painter.font(), rect.height())),
                     text);
    painter.restore();
}

} // namespace

void box(QPainter &painter, const QRectF &rect, qreal radius, const QColor &fill,
         const QColor &border)
{
    const qreal line = DevicePixels::hairline(painter);
    const QRectF outer = DevicePixels::snapped(painter, rect);
    const qreal inset = line / 2;
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(fill);
    painter.drawRoundedRect(outer, radius, radius);
    painter.setPen(QPen(border, line));
    painter.setBrush(Qt::NoBrush);
    painter.drawRoundedRect(outer.adjusted(inset, inset, -inset, -inset), radius - inset,
                            radius - inset);
    painter.restore();
}

void control(QPainter &painter, const QWidget &widget, bool down)
{
    const QPalette &colors = widget.palette();
    const qreal radius = TextScale::scaled(widget.font(), ControlMetrics::controlRadius);
    const QRectF all(widget.rect());
    box(painter, all, radius, colors.color(QPalette::Button), colors.color(QPalette::Dark));
    if (widget.isEnabled() && (down || widget.underMouse()))
        box(painter, all, radius, colors.color(QPalette::AlternateBase), Qt::transparent);
    if (down)
        box(painter, all, radius, colors.color(QPalette::AlternateBase), Qt::transparent);
    ring(painter, widget, radius);
}

void outline(QPainter &painter, const QWidget &widget, qreal radius)
{
    outline(painter, widget, widget.rect(), radius);
}

void ring(QPainter &painter, const QWidget &widget, qreal radius)
{
    ring(painter, widget, widget.rect(), radius);
}

void ring(QPainter &painter, const QWidget &widget, const QRectF &part, qreal radius)
{
    if (widget.hasFocus() && widget.window()->testAttribute(Qt::WA_KeyboardFocusChange))
        outline(painter, widget, part, radius);
}

void arrow(QPainter &painter, const QPointF &point, const QPointF &oneEnd, const QPointF &otherEnd,
           const QColor &color, qreal thickness)
{
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(color, thickness, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    const std::array<QPointF, 3> points{oneEnd, point, otherEnd};
    painter.drawPolyline(points.data(), int(points.size()));
    painter.restore();
}

void centered(QPainter &painter, const QRect &rect, const QString &text)
{
    const int width = painter.fontMetrics().horizontalAdvance(text);
    textAt(painter, rect.left() + (rect.width() - width) / 2.0, rect, text);
}

void line(QPainter &painter, const QRect &rect, int start, Qt::LayoutDirection direction,
          const QString &text)
{
    const int width = painter.fontMetrics().horizontalAdvance(text);
    const bool isRightToLeft = direction == Qt::RightToLeft;
    textAt(painter,
           isRightToLeft ? rect.left() + rect.width() - start - width : rect.left() + start, rect,
           text);
}

} // namespace tidewick::ControlPaint
