// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QColor>
#include <QImage>
#include <QRectF>
#include <QSize>

#include <memory>

class QPainter;
class QPointF;
class QSvgRenderer;

namespace tidewick {

/// The application's mark with a badge at its right, as a drawing without colours of its own: what
/// counts is how much each point is covered. Drawn anew from its vectors at whatever size is asked
/// for, so that its edges are always those of the screen. A value whose copies share the vectors.
/// Main thread only.
class StatusImage
{
public:
    /// Drawings are shown as large as they say they are, in points; the mark is brought to
    /// height().
    using Drawing = std::shared_ptr<QSvgRenderer>;

    /// The height of mark and canvas, in points: that of a menu bar's images.
    static constexpr int height() { return 16; }

    /// Composes the two; without a badge (null) it is the mark alone.
    StatusImage(Drawing mark, Drawing badge);

    /// The canvas, in points.
    QSize size() const { return m_size; }

    /// The image in a picture of so many pixels: as large as fits, its aspect kept, centred to the
    /// whole pixel, on nothing.
    QImage rendered(const QSize &pixels, const QColor &color) const;

    /// Paints the image at its own size, one point being one unit of the painter.
    void paint(QPainter &painter, const QPointF &topLeft, const QColor &color) const;

private:
    Drawing m_mark;
    Drawing m_badge;
    QRectF m_markPlace;
    QRectF m_badgePlace;
    QSize m_size;
};

} // namespace tidewick
