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
    /// The opacity of texts of disabled controls: readable, but visibly not available.
    float faint;
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
    .faint = 0.45F,
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
    .faint = 0.45F,
};

constexpr Colors lightContrast{
    .ground = {255, 255, 255},
    .card = {255, 255, 255},
    .control = {255, 255, 255},
    .border = {0, 0, 0},
    .ink = {0, 0, 0},
    .figures = {28, 29, 33},
    .details = {58, 60, 70},
    .alarm = {140, 0, 0},
    .line = {0, 0, 0, 150},
    .fill = {0, 51, 170, 36},
    .ring = {0, 51, 200},
    .selection = {0, 51, 170},
    .advice = {232, 238, 255},
    .faint = 0.6F,
};

constexpr Colors darkContrast{
    .ground = {0, 0, 0},
    .card = {0, 0, 0},
    .control = {0, 0, 0},
    .border = {255, 255, 255},
    .ink = {255, 255, 255},
    .figures = {236, 236, 238},
    .details = {206, 208, 218},
    .alarm = {255, 180, 172},
    .line = {255, 255, 255, 150},
    .fill = {143, 173, 255, 50},
    .ring = {170, 195, 255},
    .selection = {28, 70, 190},
    .advice = {0, 22, 74},
    .faint = 0.6F,
};

const Colors &colorsOf(const Scheme &scheme)
{
    if (scheme.highContrast)
        return scheme.dark ? darkContrast : lightContrast;
    return scheme.dark ? dark : light;
}

} // namespace

QPalette controlPalette(const Scheme &scheme)
{
    const Colors &colors = colorsOf(scheme);
    const auto faded = [&colors](QColor color) {
        color.setAlphaF(colors.faint);
        return color;
    };
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

bool hasHighContrast(const QPalette &palette)
{
    return palette.color(QPalette::Dark).alpha() == 255;
}

} // namespace tidewick
