// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "ui/FormPalette.h"

#include "ui/PanelPalette.h"

namespace tidewick {

namespace {

struct Colors
{
    QColor card;
    QColor control;
    QColor border;
    QColor alarm;
};

constexpr Colors light{{255, 255, 255}, {255, 255, 255}, {0, 0, 0, 46}, {180, 35, 24}};
constexpr Colors dark{{41, 43, 49}, {58, 60, 68}, {255, 255, 255, 35}, {255, 146, 134}};

} // namespace

QPalette formPalette(bool isDark)
{
    const Colors &colors = isDark ? dark : light;
    QPalette palette = panelPalette(isDark);
    palette.setColor(QPalette::Base, colors.card);
    palette.setColor(QPalette::Button, colors.control);
    palette.setColor(QPalette::Disabled, QPalette::ButtonText,
                     palette.color(QPalette::Disabled, QPalette::WindowText));
    palette.setColor(QPalette::Dark, colors.border);
    palette.setColor(QPalette::BrightText, colors.alarm);
    return palette;
}

} // namespace tidewick
