// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "ui/PanelPalette.h"

namespace tidewick {

namespace {

struct Colors
{
    QColor ground;
    QColor ink;
    QColor figures;
    QColor details;
    QColor line;
    QColor fill;
    QColor ring;
    QColor selection;
    QColor advice;
};

constexpr Colors light{
    {240, 240, 242},   {28, 29, 33},  {79, 82, 96},  {104, 107, 119}, {28, 29, 33, 31},
    {37, 83, 199, 34}, {37, 83, 199}, {37, 83, 199}, {220, 225, 240},
};

constexpr Colors dark{
    {30, 31, 36},      {236, 236, 238}, {182, 184, 194}, {147, 149, 162}, {255, 255, 255, 26},
    {47, 98, 224, 36}, {143, 173, 255}, {47, 98, 224},   {34, 49, 88},
};

/// A disabled command: seen to be there, and seen not to be for choosing.
QColor faded(QColor color)
{
    color.setAlphaF(0.45F);
    return color;
}

} // namespace

QPalette panelPalette(bool isDark)
{
    const Colors &colors = isDark ? dark : light;
    // From these two Qt derives the shades that scroll bars are drawn with.
    QPalette palette(colors.ground, colors.ground);
    for (const auto role : {QPalette::WindowText, QPalette::ButtonText})
        palette.setColor(role, colors.ink);
    palette.setColor(QPalette::Disabled, QPalette::WindowText, faded(colors.ink));
    palette.setColor(QPalette::Text, colors.figures);
    palette.setColor(QPalette::PlaceholderText, colors.details);
    palette.setColor(QPalette::Mid, colors.line);
    palette.setColor(QPalette::AlternateBase, colors.fill);
    palette.setColor(QPalette::ToolTipBase, colors.advice);
    palette.setColor(QPalette::Link, colors.ring);
    palette.setColor(QPalette::Highlight, colors.selection);
    palette.setColor(QPalette::HighlightedText, Qt::white);
    return palette;
}

} // namespace tidewick
