// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "ui/ledger/Palette.h"

namespace tidewick {

namespace {

QColor translucent(int red, int green, int blue, float opacity)
{
    QColor color(red, green, blue);
    color.setAlphaF(opacity);
    return color;
}

} // namespace

Palette::Palette(bool dark)
    : bg(dark ? QColor(15, 18, 24) : QColor(245, 242, 236)),
      surface(dark ? QColor(23, 27, 35) : QColor(255, 253, 249)),
      ink(dark ? QColor(236, 232, 225) : QColor(28, 29, 33)),
      ink2(dark ? QColor(180, 183, 192) : QColor(79, 82, 96)),
      ink3(dark ? QColor(143, 147, 161) : QColor(104, 107, 119)),
      line(dark ? translucent(255, 255, 255, 0.11F) : translucent(28, 29, 33, 0.12F)),
      accent(dark ? QColor(47, 98, 224) : QColor(37, 83, 199)),
      accentSoft(dark ? translucent(110, 150, 255, 0.12F) : translucent(37, 83, 199, 0.09F)),
      link(dark ? QColor(143, 173, 255) : QColor(37, 83, 199)),
      thread(dark ? QColor(224, 162, 74) : QColor(201, 130, 42))
{
}

} // namespace tidewick
