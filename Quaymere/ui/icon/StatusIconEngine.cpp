// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "ui/icon/StatusIconEngine.h"

#include <QPainter>
#include <QPixmap>
#include <QtPlugin>

// Without this plugin Qt may find none of a theme's symbolic icons.
Q_IMPORT_PLUGIN(SvgIconPlugin)

namespace tidewick {

StatusIconEngine::StatusIconEngine(std::shared_ptr<const StatusImage> image, const QColor &color,
                                   QString themeName)
    : m_image(std::move(image)), m_color(color), m_themeName(std::move(themeName))
{
}

void StatusIconEngine::paint(QPainter *painter, const QRect &rect, QIcon::Mode, QIcon::State)
{
    const qreal ratio = painter->device()->devicePixelRatioF();
    QImage picture = m_image->rendered((QSizeF(rect.size()) * ratio).toSize(), m_color);
    picture.setDevicePixelRatio(ratio);
    painter->drawImage(rect.topLeft(), picture);
}

QPixmap StatusIconEngine::pixmap(const QSize &size, QIcon::Mode, QIcon::State)
{
    return QPixmap::fromImage(m_image->rendered(size, m_color));
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

} // namespace tidewick
