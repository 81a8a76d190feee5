// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include "ui/icon/StatusImage.h"

namespace tidewick {

/// The application's mark with a badge in its lower right corner, for square places. The mark has
/// the same size and place with any badge; the corner is cut out of it. Rendered from vectors, like
/// StatusImage. A value type whose copies share the vectors. Main thread only.
class SquareStatusImage
{
public:
    using Drawing = StatusImage::Drawing;

    /// A badge, drawn twice because no drawing is sharp at all sizes. Drawings that would be too
    /// large are scaled down.
    struct Badge
    {
        /// On a grid of seven units, for heights of a multiple of seven pixels: in pictures of 16
        /// and 32 pixels, for example.
        Drawing sevenths;
        /// On a grid of nine units, for all other heights: nine pixels in a picture of 22.
        Drawing ninths;
    };

    /// What surrounds mark and badge.
    enum class Edge {
        /// An outline in black or white, whichever differs more from their colour: for trays, since
        /// nobody tells a program what colour the panel has that shows its icon.
        Outlined,
        Plain, ///< Nothing. The mark is as wide as the square.
    };

    /// Composes mark and badge. Without both drawings of a badge, the mark stays whole.
    SquareStatusImage(Drawing mark, Badge badge);

    /// The width of the outline in a square of this side, in pixels.
    static int outlineWidth(int side);

    /// Renders the image into a picture of this size: into the largest square that fits, centred to
    /// the whole pixel, on a transparent background.
    QImage rendered(const QSize &pixels, const QColor &color, Edge edge) const;

private:
    QImage mark(const QSize &pixels, const QRectF &square) const;
    QImage badge(const QSize &pixels, const QRectF &square) const;

    Drawing m_mark;
    Badge m_badge;
};

} // namespace tidewick
