// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "ui/icon/StatusImage.h"

#include "ui/icon/WholePixels.h"

#include <QPainter>
#include <QSvgRenderer>

#include <algorithm>
#include <cmath>

namespace tidewick {

namespace {

/// Between mark and badge, in points.
constexpr qreal gap = 2;

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
    m_mark->render(&painter, WholePixels::carried(m_markPlace, canvas, fitted));
    if (m_badge)
        WholePixels::draw(painter, *m_badge, WholePixels::carried(m_badgePlace, canvas, fitted));
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
