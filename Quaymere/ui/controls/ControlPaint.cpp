// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "ui/controls/ControlPaint.h"

#include "ui/controls/ControlMetrics.h"
#include "ui/controls/DevicePixels.h"
#include "ui/controls/TextScale.h"

#include <QStyle>
#include <QTextOption>
#include <QWidget>

#include <array>

namespace tidewick::ControlPaint {

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

void ring(QPainter &painter, const QWidget &widget, qreal radius)
{
    if (widget.hasFocus() && widget.window()->testAttribute(Qt::WA_KeyboardFocusChange))
        outline(painter, widget, radius);
}

void outline(QPainter &painter, const QWidget &widget, qreal radius)
{
    constexpr qreal thickness = 1.5;
    const qreal inset = thickness / 2;
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(widget.palette().link(), thickness));
    painter.setBrush(Qt::NoBrush);
    painter.drawRoundedRect(QRectF(widget.rect()).adjusted(inset, inset, -inset, -inset),
                            radius - inset, radius - inset);
    painter.restore();
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

void line(QPainter &painter, const QRect &rect, int start, Qt::LayoutDirection direction,
          const QString &text)
{
    QTextOption option(QStyle::visualAlignment(direction, Qt::AlignLeft) | Qt::AlignVCenter
                       | Qt::AlignAbsolute);
    option.setWrapMode(QTextOption::NoWrap);
    painter.drawText(QRectF(QStyle::visualRect(direction, rect, rect.adjusted(start, 0, 0, 0))),
                     text, option);
}

} // namespace tidewick::ControlPaint
