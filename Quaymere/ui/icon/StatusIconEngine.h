// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include "ui/icon/StatusImage.h"

#include <QIconEngine>

namespace tidewick {

/// Provides a StatusImage in one colour to a QIcon, at any size and without ever scaling a bitmap.
/// All modes and states look the same: tinting is left to the program that shows the icon.
class StatusIconEngine : public QIconEngine
{
public:
    /// `themeName` is the name by which an icon theme may provide this image; empty if it has no
    /// such name.
    StatusIconEngine(std::shared_ptr<const StatusImage> image, const QColor &color,
                     QString themeName);

    void paint(QPainter *painter, const QRect &rect, QIcon::Mode mode, QIcon::State state) override;
    QPixmap pixmap(const QSize &size, QIcon::Mode mode, QIcon::State state) override;
    QList<QSize> availableSizes(QIcon::Mode mode, QIcon::State state) override;
    QIconEngine *clone() const override;
    QString key() const override;
    bool isNull() override;

    /// Returns the image's name in the icon theme if the theme provides it, so that a tray can draw
    /// the theme's version in its own colours. Otherwise empty, and the tray draws the pixmaps.
    QString iconName() override;

private:
    std::shared_ptr<const StatusImage> m_image;
    QColor m_color;
    QString m_themeName;
};

} // namespace tidewick
