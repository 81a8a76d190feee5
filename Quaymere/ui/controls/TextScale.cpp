// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "ui/controls/TextScale.h"

#include <QFontDatabase>
#include <QFontInfo>
#include <QFontMetrics>
#include <QHash>
#include <QPainterPath>

#include <algorithm>
#include <cmath>

namespace tidewick::TextScale {

namespace {

/// 10 points at 96 dots per inch.
constexpr qreal usualPixels = 40.0 / 3;

constexpr qsizetype mostKnown = 64;

int measuredOverhang(const QFont &font)
{
    constexpr qreal unseen = 0.05;
    const QFontMetricsF metrics(font);
    QPainterPath letters;
    letters.addText(0, 0, font, QStringLiteral("bdfhklgjpqy'"));
    const QRectF ink = letters.boundingRect();
    const qreal beyond = std::max(-ink.top() - metrics.ascent(), ink.bottom() - metrics.descent());
    return std::max(0, int(std::ceil(beyond - unseen)));
}

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

QFont fixedWidth(const QFont &font)
{
    // Fixed-width letters look larger than others of the same size.
    constexpr qreal factor = 0.92;
    QFont fixed = QFontDatabase::systemFont(QFontDatabase::FixedFont);
    const QFont size = resized(font, factor);
    if (size.pixelSize() > 0)
        fixed.setPixelSize(size.pixelSize());
    else
        fixed.setPointSizeF(size.pointSizeF());
    return fixed;
}

int fontHeight(const QFont &font)
{
    QFont unhinted(font);
    unhinted.setHintingPreference(QFont::PreferNoHinting);
    return int(std::ceil(QFontMetricsF(unhinted).height()));
}

int overhang(const QFont &font)
{
    // Outlines are slow to compute, and windows ask for the same few fonts at every step of a
    // resize.
    static QHash<QFont, int> known;
    if (const auto found = known.constFind(font); found != known.constEnd())
        return *found;
    if (known.size() >= mostKnown)
        known.clear();
    return *known.insert(font, measuredOverhang(font));
}

int baseline(const QFont &font, int boxHeight)
{
    const QFontMetricsF metrics(font);
    return qRound((boxHeight + metrics.ascent() - metrics.descent()) / 2);
}

int lineHeight(const QFont &font)
{
    return fontHeight(font) + 2 * overhang(font);
}

} // namespace tidewick::TextScale
