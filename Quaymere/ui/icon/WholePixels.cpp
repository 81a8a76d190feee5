// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "ui/icon/WholePixels.h"

#include <QSvgRenderer>

#include <algorithm>
#include <cmath>

namespace tidewick {

namespace {

QRectF edges(QSvgRenderer &badge)
{
    const QString marked = QStringLiteral("edges");
    return badge.elementExists(marked) ? badge.boundsOnElement(marked) : badge.viewBoxF();
}

/// Returns the nearest rectangle of whole pixels, with the size rounded to at least one pixel.
QRectF rounded(const QRectF &rect)
{
    const qreal width = std::max(std::round(rect.width()), 1.0);
    const qreal height = std::max(std::round(rect.height()), 1.0);
    return {std::round(rect.center().x() - width / 2), std::round(rect.center().y() - height / 2),
            width, height};
}

} // namespace

QRectF WholePixels::carried(const QRectF &rect, const QRectF &from, const QRectF &to)
{
    const qreal across = to.width() / from.width();
    const qreal down = to.height() / from.height();
    return {to.x() + (rect.x() - from.x()) * across, to.y() + (rect.y() - from.y()) * down,
            rect.width() * across, rect.height() * down};
}

void WholePixels::draw(QPainter &painter, QSvgRenderer &badge, const QRectF &place)
{
    const QRectF whole = badge.viewBoxF();
    const QRectF part = edges(badge);
    badge.render(&painter, carried(whole, part, rounded(carried(part, whole, place))));
}

} // namespace tidewick
