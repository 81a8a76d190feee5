// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "ui/icon/StatusIconEngine.h"

#include <QPainter>
#include <QPixmap>
#include <QtPlugin>

// Without this plugin Qt may find none of a theme's symbolic icons.
Q_IMPORT_PLUGIN(SvgIconPlugin)

namespace tidewick {

StatusIconEngine::StatusIconEngine(std::shared_ptr<const StatusImages> images, const QColor &color,
                                   QString themeName)
    : m_images(std::move(images)), m_color(color), m_themeName(std::move(themeName))
{
}

void StatusIconEngine::paint(QPainter *painter, const QRect &rect, QIcon::Mode, QIcon::State)
{
    const qreal ratio = painter->device()->devicePixelRatioF();
    QImage picture = rendered((QSizeF(rect.size()) * ratio).toSize());
    picture.setDevicePixelRatio(ratio);
    painter->drawImage(rect.topLeft(), picture);
}

QPixmap StatusIconEngine::pixmap(const QSize &size, QIcon::Mode, QIcon::State)
{
    return QPixmap::fromImage(rendered(size));
}

QList<QSize> StatusIconEngine::availableSizes(QIcon::Mode, QIcon::State)
{
    // The sizes that trays use at device pixel ratios 1 and 2. Trays that receive pixmaps choose
    // among them.
    return {{16, 16}, {22, 22}, {24, 24}, {32, 32}, {48, 48}, {64, 64}};
}

QIconEngine *StatusIconEngine::clone() const
{
    return new StatusIconEngine(*this);
}

QString StatusIconEngine::key() const
{
    return QStringLiteral("tidewick-status");
}

bool StatusIconEngine::isNull()
{
    return false;
}

QString StatusIconEngine::iconName()
{
    return QIcon::hasThemeIcon(m_themeName) ? m_themeName : QString();
}

QImage StatusIconEngine::rendered(const QSize &pixels) const
{
    // XEmbed slots are a little wider or higher than square in some panels.
    const bool isWide = pixels.width() * 2 >= pixels.height() * 3;
    return isWide ? m_images->wide.rendered(pixels, m_color)
                  : m_images->square.rendered(pixels, m_color, SquareStatusImage::Edge::Outlined);
}

} // namespace tidewick
