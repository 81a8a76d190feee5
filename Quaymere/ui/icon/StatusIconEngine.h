// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include "ui/icon/StatusImage.h"

#include <QIconEngine>

namespace tidewick {

/// Gives a StatusImage in one colour to a QIcon, in any size and without a bitmap ever being
/// scaled. Modes and states look the same: who shows the icon tints it.
class StatusIconEngine : public QIconEngine
{
public:
    /// `themeName` is what an icon theme may call this image; empty if it has no name there.
    StatusIconEngine(std::shared_ptr<const StatusImage> image, const QColor &color,
                     QString themeName);

    void paint(QPainter *painter, const QRect &rect, QIcon::Mode mode, QIcon::State state) override;
    QPixmap pixmap(const QSize &size, QIcon::Mode mode, QIcon::State state) override;
    QList<QSize> availableSizes(QIcon::Mode mode, QIcon::State state) override;
    QIconEngine *clone() const override;
    QString key() const override;
    bool isNull() override;

    /// The theme's name for the image where the theme has it, so that a tray may draw the theme's
    /// own in its colours; else empty, and it draws the pixmaps.
    QString iconName() override;

private:
    std::shared_ptr<const StatusImage> m_image;
    QColor m_color;
    QString m_themeName;
};

} // namespace tidewick
