// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "ui/controls/ControlPalette.h"

namespace tidewick {

namespace {

struct Colors
{
    QColor ground;
    QColor card;
    QColor control;
    QColor border;
    QColor ink;
    QColor figures;
    QColor details;
    QColor alarm;
    QColor line;
    QColor fill;
    QColor ring;
    QColor selection;
    QColor advice;
};

constexpr Colors light{
    .ground = {240, 240, 242},
    .card = {255, 255, 255},
    .control = {255, 255, 255},
    .border = {0, 0, 0, 46},
    .ink = {28, 29, 33},
    .figures = {79, 82, 96},
    .details = {104, 107, 119},
    .alarm = {180, 35, 24},
    .line = {28, 29, 33, 31},
    .fill = {37, 83, 199, 34},
    .ring = {37, 83, 199},
    .selection = {37, 83, 199},
    .advice = {220, 225, 240},
};

constexpr Colors dark{
    .ground = {30, 31, 36},
    .card = {41, 43, 49},
    .control = {58, 60, 68},
    .border = {255, 255, 255, 35},
    .ink = {236, 236, 238},
    .figures = {182, 184, 194},
    .details = {147, 149, 162},
    .alarm = {255, 146, 134},
    .line = {255, 255, 255, 26},
    .fill = {47, 98, 224, 36},
    .ring = {143, 173, 255},
    .selection = {47, 98, 224},
    .advice = {34, 49, 88},
};

/// The colour for a disabled control: readable, but visibly not available.
QColor faded(QColor color)
{
    color.setAlphaF(0.45F);
    return color;
}

} // namespace

QPalette controlPalette(bool isDark)
{
    const Colors &colors = isDark ? dark : light;
    // Qt derives the shades of scroll bars from these two colours.
    QPalette palette(colors.ground, colors.ground);
    for (const auto role : {QPalette::WindowText, QPalette::ButtonText}) {
        palette.setColor(role, colors.ink);
        palette.setColor(QPalette::Disabled, role, faded(colors.ink));
    }
    palette.setColor(QPalette::Base, colors.card);
    palette.setColor(QPalette::Button, colors.control);
    palette.setColor(QPalette::Dark, colors.border);
    palette.setColor(QPalette::Text, colors.figures);
    palette.setColor(QPalette::PlaceholderText, colors.details);
    palette.setColor(QPalette::Disabled, QPalette::PlaceholderText, faded(colors.details));
    palette.setColor(QPalette::BrightText, colors.alarm);
    palette.setColor(QPalette::Mid, colors.line);
    palette.setColor(QPalette::AlternateBase, colors.fill);
    palette.setColor(QPalette::ToolTipBase, colors.advice);
    palette.setColor(QPalette::Link, colors.ring);
    palette.setColor(QPalette::Highlight, colors.selection);
    palette.setColor(QPalette::HighlightedText, Qt::white);
    return palette;
}

} // namespace tidewick
