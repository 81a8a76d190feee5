// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "Page.h"

#include <QFont>
#include <QPainter>

namespace tidewick {

namespace {

constexpr int gap = 24;
constexpr int captionHeight = 18;
constexpr int captionPixels = 12;

/// Returns the places of all figures, captions excluded.
std::vector<QRect> placesOf(const std::vector<Figure> &figures, int width)
{
    std::vector<QRect> places;
    QPoint next(gap, gap + captionHeight);
    int rowHeight = 0;
    for (const Figure &figure : figures) {
        const QSize size = figure.picture.size();
        if (next.x() > gap && next.x() + size.width() + gap > width) {
            next = {gap, next.y() + rowHeight + gap + captionHeight};
            rowHeight = 0;
        }
        places.emplace_back(next, size);
        next.rx() += size.width() + gap;
        rowHeight = std::max(rowHeight, size.height());
    }
    return places;
}

} // namespace

QImage pageOf(const std::vector<Figure> &figures, int width, const QColor &ground)
{
    const std::vector<QRect> places = placesOf(figures, width);
    QRect all(0, 0, width, 1);
    for (const QRect &place : places)
        all |= place.adjusted(0, 0, gap, gap);
    QImage page(all.size(), QImage::Format_RGB32);
    page.fill(ground);
    QPainter painter(&page);
    QFont font;
    font.setPixelSize(captionPixels);
    painter.setFont(font);
    painter.setPen(ground.lightness() < 128 ? Qt::white : Qt::black);
    for (std::size_t i = 0; i < figures.size(); ++i) {
        QImage picture = figures[i].picture;
        picture.setDevicePixelRatio(1);
        painter.drawImage(places[i].topLeft(), picture);
        painter.drawText(places[i].topLeft() - QPoint(0, 6), figures[i].caption);
    }
    return page;
}

} // namespace tidewick
