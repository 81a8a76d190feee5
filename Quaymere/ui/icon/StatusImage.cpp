// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "ui/icon/StatusImage.h"

#include <QPainter>
#include <QSvgRenderer>

#include <algorithm>
#include <cmath>

namespace tidewick {

namespace {

/// Between mark and badge, in points.
constexpr qreal gap = 2;

/// Returns the part of a badge that must align with whole pixels: its straight edges would
/// otherwise be smeared over two pixels each. The drawing may mark an element with the id "edges";
/// without one it is the whole drawing.
QRectF edges(QSvgRenderer &badge)
{
    const QString marked = QStringLiteral("edges");
    return badge.elementExists(marked) ? badge.boundsOnElement(marked) : badge.viewBoxF();
}

/// Returns the nearest rectangle of whole pixels, with the size rounded to at least one pixel.
QRectF onWholePixels(const QRectF &rect)
{
    const qreal width = std::max(std::round(rect.width()), 1.0);
    const qreal height = std::max(std::round(rect.height()), 1.0);
    return {std::round(rect.center().x() - width / 2), std::round(rect.center().y() - height / 2),
            width, height};
}

/// Returns `rect` mapped by the translation and scaling that turn `from` into `to`.
QRectF carried(const QRectF &rect, const QRectF &from, const QRectF &to)
{
    const qreal across = to.width() / from.width();
    const qreal down = to.height() / from.height();
    return {to.x() + (rect.x() - from.x()) * across, to.y() + (rect.y() - from.y()) * down,
            rect.width() * across, rect.height() * down};
}

} // namespace

StatusImage::StatusImage(Drawing mark, Drawing badge)
    : m_mark(std::move(mark)), m_badge(std::move(badge))
{
    const QSizeF markSize = m_mark->viewBoxF().size();
    const qreal markWidth = markSize.width() * height() / markSize.height();
    m_markPlace = QRectF(0, 0, markWidth, height());
    qreal width = markWidth;
    if (m_badge) {
        const QSizeF badgeSize = m_badge->viewBoxF().size();
        m_badgePlace =
            QRectF(QPointF(markWidth + gap, (height() - badgeSize.height()) / 2), badgeSize);
        width = m_badgePlace.right();
    }
    m_size = QSize(static_cast<int>(std::ceil(width)), height());
}

QImage StatusImage::rendered(const QSize &pixels, const QColor &color) const
{
    QImage picture(pixels, QImage::Format_ARGB32_Premultiplied);
    if (picture.isNull())
        return picture;
    picture.fill(Qt::transparent);

    const qreal scale =
        std::min(qreal(pixels.width()) / m_size.width(), qreal(pixels.height()) / m_size.height());
    const QPointF origin(std::floor((pixels.width() - m_size.width() * scale) / 2),
                         std::floor((pixels.height() - m_size.height() * scale) / 2));
    const QRectF canvas(QPointF(), m_size);
    const QRectF fitted(origin, canvas.size() * scale);

    QPainter painter(&picture);
    m_mark->render(&painter, carried(m_markPlace, canvas, fitted));
    if (m_badge) {
        const QRectF whole = m_badge->viewBoxF();
        const QRectF part = edges(*m_badge);
        const QRectF place = carried(part, whole, carried(m_badgePlace, canvas, fitted));
        m_badge->render(&painter, carried(whole, part, onWholePixels(place)));
    }
    painter.setCompositionMode(QPainter::CompositionMode_SourceIn);
    painter.fillRect(picture.rect(), color);
    return picture;
}

void StatusImage::paint(QPainter &painter, const QPointF &topLeft, const QColor &color) const
{
    const qreal ratio = painter.device()->devicePixelRatioF();
    const QSizeF pixels = QSizeF(m_size) * ratio;
    QImage picture = rendered(QSize(static_cast<int>(std::ceil(pixels.width())),
                                    static_cast<int>(std::ceil(pixels.height()))),
                              color);
    picture.setDevicePixelRatio(ratio);
    painter.drawImage(topLeft, picture);
}

} // namespace tidewick
