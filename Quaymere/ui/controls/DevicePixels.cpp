// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "ui/controls/DevicePixels.h"

#include <QPainter>

#include <cmath>

namespace tidewick::DevicePixels {

QRectF snapped(const QPainter &painter, const QRectF &rect)
{
    const QRectF pixels = painter.deviceTransform().mapRect(rect);
    const QRectF whole(QPointF(std::round(pixels.left()), std::round(pixels.top())),
                       QPointF(std::round(pixels.right()), std::round(pixels.bottom())));
    return painter.deviceTransform().inverted().mapRect(whole);
}

qreal hairline(const QPainter &painter)
{
    const qreal ratio = painter.deviceTransform().m22();
    return std::max(1.0, std::floor(ratio)) / ratio;
}

} // namespace tidewick::DevicePixels
