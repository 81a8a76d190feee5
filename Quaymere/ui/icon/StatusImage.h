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

/// The application's mark with a badge to its right, as a drawing without colours: only the
/// coverage of each pixel counts. It is rendered from its vectors at each requested size, so its
/// edges always match the screen's pixels. A value type whose copies share the vectors. Main thread
/// only.
class StatusImage
{
public:
    /// Drawings are shown at the size they declare, in points, except that the mark is scaled to
    /// height().
    using Drawing = std::shared_ptr<QSvgRenderer>;

    /// The height of mark and canvas, in points; the usual height of menu-bar images.
    static constexpr int height() { return 16; }

    /// Composes mark and badge. A null badge leaves the mark alone.
    StatusImage(Drawing mark, Drawing badge);

    /// The size of the canvas, in points.
    QSize size() const { return m_size; }

    /// Renders the image into a picture of this size: as large as fits with its aspect ratio kept,
    /// centred to the whole pixel, on a transparent background.
    QImage rendered(const QSize &pixels, const QColor &color) const;

    /// Paints the image at its natural size, one point per unit of the painter.
    void paint(QPainter &painter, const QPointF &topLeft, const QColor &color) const;

private:
    Drawing m_mark;
    Drawing m_badge;
    QRectF m_markPlace;
    QRectF m_badgePlace;
    QSize m_size;
};

} // namespace tidewick
