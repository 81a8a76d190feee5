// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "ui/icon/SquareStatusImage.h"

#include "ui/icon/WholePixels.h"

#include <QPainter>
#include <QPainterPath>
#include <QSvgRenderer>

#include <algorithm>
#include <cmath>

namespace tidewick {

namespace {

/// The following lengths are in twentieths of the side inside the outline, which is the unit of the
/// mark that we ship.
constexpr qreal units = 20;
/// Seven pixels of a themed icon of 16.
constexpr qreal leastBadgeHeight = 8.75;
constexpr qreal mostBadgeAspect = 1.25;

/// The corner cut out for a badge. It reaches beyond the square, so only one of its corners counts.
/// Its edges are about two units from most badges: the outline, and as much that stays transparent.
/// The file resources/icons/MenuBarIconCut.svg has the same cut.
constexpr QRectF cutOut(8, 9, 20, 20);
constexpr qreal cutOutRadius = 4;

struct BadgeHeight
{
    int pixels;
    /// How many units the drawing for this height has.
    int grid;
};

/// Prefers a height that puts each unit of the drawing on whole pixels, if one is near enough.
BadgeHeight badgeHeight(qreal least)
{
    const auto whole = [least](int grid) {
        return BadgeHeight{int(std::ceil(least / grid)) * grid, grid};
    };
    constexpr qreal nearEnough = 1.15;
    const BadgeHeight best = std::min(
        whole(7), whole(9), [](auto one, auto other) { return one.pixels < other.pixels; });
    return best.pixels <= least * nearEnough ? best : BadgeHeight{int(std::ceil(least)), 9};
}

QImage canvas(const QSize &pixels)
{
    QImage canvas(pixels, QImage::Format_ARGB32_Premultiplied);
    canvas.fill(Qt::transparent);
    return canvas;
}

/// Returns the coverage of an outline beside a pixel of this coverage. Nearly covered pixels count
/// as covered, so that thin strokes get a solid outline, but translucent ones a translucent one.
uchar outlined(int coverage)
{
    return uchar(std::clamp(2 * coverage - 128, coverage, 255));
}

/// Returns the shape of a drawing widened by so many pixels. Only the coverage counts.
QImage widened(const QImage &drawing, int width)
{
    const QImage shape = drawing.convertToFormat(QImage::Format_Alpha8);
    QImage wider(shape.size(), QImage::Format_Alpha8);
    wider.fill(0);
    for (int down = -width; down <= width; ++down) {
        for (int across = -width; across <= width; ++across) {
            const qreal weight = std::clamp(width + 1 - std::hypot(across, down), 0.0, 1.0);
            const int right = shape.width() + std::min(0, across);
            for (int y = std::max(0, down); y < shape.height() + std::min(0, down); ++y) {
                const uchar *from = shape.constScanLine(y - down);
                uchar *to = wider.scanLine(y);
                for (int x = std::max(0, across); x < right; ++x)
                    to[x] = std::max(to[x], uchar(weight * outlined(from[x - across])));
            }
        }
    }
    return wider;
}

QImage tinted(const QImage &shape, const QColor &color)
{
    QImage picture = shape.convertToFormat(QImage::Format_ARGB32_Premultiplied);
    QPainter painter(&picture);
    painter.setCompositionMode(QPainter::CompositionMode_SourceIn);
    painter.fillRect(picture.rect(), color);
    return picture;
}

void cutCorner(QImage &picture, const QRectF &square)
{
    const qreal radius = cutOutRadius * square.width() / units;
    QPainterPath corner;
    corner.addRoundedRect(WholePixels::carried(cutOut, QRectF(0, 0, units, units), square), radius,
                          radius);
    QPainter painter(&picture);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setCompositionMode(QPainter::CompositionMode_DestinationOut);
    painter.fillPath(corner, Qt::black);
}

QImage outlineOf(const QImage &drawing, const QColor &color, int width)
{
    const QColor opposite = qGray(color.rgb()) < 128 ? Qt::white : Qt::black;
    return tinted(widened(drawing, width), opposite);
}

} // namespace

SquareStatusImage::SquareStatusImage(Drawing mark, Badge badge)
    : m_mark(std::move(mark)), m_badge(std::move(badge))
{
}

int SquareStatusImage::outlineWidth(int side)
{
    return std::max(1, qRound(side / 22.0));
}

QImage SquareStatusImage::rendered(const QSize &pixels, const QColor &color, Edge edge) const
{
    const int shorter = std::min(pixels.width(), pixels.height());
    const int outline = edge == Edge::Outlined ? outlineWidth(shorter) : 0;
    const int inside = shorter - 2 * outline;
    QImage picture = canvas(pixels);
    if (inside <= 0)
        return picture;
    const QRect square((pixels.width() - inside) / 2, (pixels.height() - inside) / 2, inside,
                       inside);
    QPainter painter(&picture);
    const bool hasBadge = m_badge.sevenths && m_badge.ninths;
    QImage shape = mark(pixels, square);
    if (hasBadge)
        cutCorner(shape, square);
    if (outline > 0) {
        QImage around = outlineOf(shape, color, outline);
        if (hasBadge)
            cutCorner(around, square);
        painter.drawImage(0, 0, around);
    }
    painter.drawImage(0, 0, tinted(shape, color));
    if (hasBadge) {
        shape = badge(pixels, square);
        if (outline > 0)
            painter.drawImage(0, 0, outlineOf(shape, color, outline));
        painter.drawImage(0, 0, tinted(shape, color));
    }
    return picture;
}

QImage SquareStatusImage::mark(const QSize &pixels, const QRectF &square) const
{
    const QSizeF size = m_mark->viewBoxF().size().scaled(square.size(), Qt::KeepAspectRatio);
    const QRectF place(square.x() + std::floor((square.width() - size.width()) / 2),
                       square.y() + std::floor((square.height() - size.height()) / 2), size.width(),
                       size.height());
    QImage shape = canvas(pixels);
    QPainter painter(&shape);
    m_mark->render(&painter, place);
    return shape;
}

QImage SquareStatusImage::badge(const QSize &pixels, const QRectF &square) const
{
    const BadgeHeight height = badgeHeight(leastBadgeHeight * square.width() / units);
    QSvgRenderer &drawing = height.grid == 7 ? *m_badge.sevenths : *m_badge.ninths;
    QSizeF size = drawing.viewBoxF().size() * height.pixels / height.grid;
    const QSizeF most(height.pixels * mostBadgeAspect, height.pixels);
    if (size.width() > most.width() || size.height() > most.height())
        size.scale(most, Qt::KeepAspectRatio);
    QImage shape = canvas(pixels);
    QPainter painter(&shape);
    QRectF place(QPointF(), size);
    place.moveBottomRight(square.bottomRight());
    WholePixels::draw(painter, drawing, place);
    return shape;
}

} // namespace tidewick
