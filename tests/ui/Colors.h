// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QImage>

#include <cmath>

namespace tidewick {

/// The colour that results from painting `color` over an opaque `ground`.
inline QColor over(const QColor &color, const QColor &ground)
{
    const auto mixed = [&color](float above, float below) {
        return above * color.alphaF() + below * (1 - color.alphaF());
    };
    return QColor::fromRgbF(mixed(color.redF(), ground.redF()),
                            mixed(color.greenF(), ground.greenF()),
                            mixed(color.blueF(), ground.blueF()));
}

/// The relative luminance as the Web Content Accessibility Guidelines define it.
inline double luminance(const QColor &color)
{
    const auto linear = [](double part) {
        return part <= 0.04045 ? part / 12.92 : std::pow((part + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * linear(color.redF()) + 0.7152 * linear(color.greenF())
           + 0.0722 * linear(color.blueF());
}

inline double contrast(const QColor &one, const QColor &other)
{
    const auto [less, more] = std::minmax({luminance(one), luminance(other)});
    return (more + 0.05) / (less + 0.05);
}

/// The sum of the differences in red, green and blue. Drawn colours may be off by a little.
inline int distance(const QColor &one, const QColor &other)
{
    return std::abs(one.red() - other.red()) + std::abs(one.green() - other.green())
           + std::abs(one.blue() - other.blue());
}

/// The colour of a text: the pixel colour that differs most from the background, which is the
/// first pixel's.
inline QColor inkColor(const QImage &picture)
{
    const QColor ground = picture.pixelColor(0, 0);
    QColor furthest = ground;
    for (int y = 0; y < picture.height(); ++y) {
        for (int x = 0; x < picture.width(); ++x) {
            if (distance(picture.pixelColor(x, y), ground) > distance(furthest, ground))
                furthest = picture.pixelColor(x, y);
        }
    }
    return furthest;
}

} // namespace tidewick
