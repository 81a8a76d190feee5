// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "ui/TextScale.h"

#include <QFontInfo>

namespace tidewick::TextScale {

namespace {

/// 10 points at 96 dots per inch.
constexpr qreal usualPixels = 40.0 / 3;

} // namespace

int scaled(const QFont &font, int points)
{
    return qRound(points * std::max(1.0, QFontInfo(font).pixelSize() / usualPixels));
}

QFont resized(const QFont &font, qreal factor)
{
    QFont other(font);
    if (font.pixelSize() > 0)
        other.setPixelSize(std::max(1, qRound(font.pixelSize() * factor)));
    else
        other.setPointSizeF(font.pointSizeF() * factor);
    return other;
}

} // namespace tidewick::TextScale
