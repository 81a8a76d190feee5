// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "ui/about/AppIcon.h"

#include "ui/controls/DevicePixels.h"
#include "ui/controls/TextScale.h"

#include <QGuiApplication>
#include <QImage>
#include <QPainter>

#include <utility>

namespace tidewick {

namespace {

/// Returns the smallest rectangle that contains every visible pixel.
QRect drawnPart(const QImage &image)
{
    QRect drawn;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            if (image.pixelColor(x, y).alpha() > 0)
                drawn |= QRect(x, y, 1, 1);
        }
    }
    return drawn;
}

} // namespace

AppIcon::AppIcon(QWidget *parent) : QWidget(parent), m_icon(QGuiApplication::windowIcon())
{
    constexpr int side = 64;
    const int scaled = TextScale::scaled(font(), side);
    setFixedSize(scaled, scaled);
}

bool AppIcon::isThere()
{
    return !QGuiApplication::windowIcon().isNull();
}

QPixmap AppIcon::picture(int side) const
{
    const auto drawnAt = [this](int size) {
        const QImage whole = m_icon.pixmap(QSize(size, size), 1).toImage();
        return whole.copy(drawnPart(whole));
    };
    const auto largest = [](const QImage &image) {
        return std::max(image.width(), image.height());
    };
    const QImage usual = drawnAt(side);
    if (usual.isNull())
        return {};
    // An edge may be drawn in one pixel more than in proportion.
    int size = side * side / largest(usual);
    QImage drawn = drawnAt(size);
    while (largest(drawn) > side)
        drawn = drawnAt(--size);
    return QPixmap::fromImage(drawn);
}

void AppIcon::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    const qreal ratio = painter.device()->devicePixelRatioF();
    const int side = int(width() * ratio);
    if (std::exchange(m_side, side) != side)
        m_picture = picture(side);
    const QSizeF size = QSizeF(m_picture.size()) / ratio;
    QRectF place({}, size);
    place.moveCenter(QRectF(rect()).center());
    painter.drawPixmap(DevicePixels::snapped(painter, place), m_picture, m_picture.rect());
}

} // namespace tidewick
