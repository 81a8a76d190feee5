// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include "ui/icon/SquareStatusImage.h"
#include "ui/icon/StatusImage.h"

#include <QIconEngine>

namespace tidewick {

/// The compositions of the mark with one badge.
struct StatusImages
{
    StatusImage wide;
    SquareStatusImage square;
};

/// Provides the compositions in one colour to a QIcon, at any size and without ever scaling a
/// bitmap: the square one, with its outline, for slots that are about square, as those of trays
/// are; the wide one for places that have room beside the mark. All modes and states look the same:
/// tinting is left to the program that shows the icon.
class StatusIconEngine : public QIconEngine
{
public:
    /// `themeName` is the name by which an icon theme may provide this image; empty if it has no
    /// such name.
    StatusIconEngine(std::shared_ptr<const StatusImages> images, const QColor &color,
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
    QImage rendered(const QSize &pixels) const;

    std::shared_ptr<const StatusImages> m_images;
    QColor m_color;
    QString m_themeName;
};

} // namespace tidewick
