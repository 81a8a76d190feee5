// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QImage>
#include <QString>

#include <vector>

namespace tidewick {

/// A picture with a caption.
struct Figure
{
    QString caption;
    QImage picture;
};

/// Lays figures out in rows, from the left, on a page of this width in pixels, on a background of
/// this colour. The page is as high as it has to be; a figure wider than the page makes it wider.
QImage pageOf(const std::vector<Figure> &figures, int width, const QColor &ground);

} // namespace tidewick
