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

/// A colour in the dark and in the light scheme.
struct Pair
{
    QColor dark;
    QColor light;
};

QColor chosen(const Scheme &scheme, const Pair &usual, const Pair &highContrast)
{
    const Pair &pair = scheme.highContrast ? highContrast : usual;
    return scheme.dark ? pair.dark : pair.light;
}

} // namespace

Palette::Palette(const Scheme &scheme)
    : bg(chosen(scheme, {{15, 18, 24}, {245, 242, 236}}, {Qt::black, Qt::white})),
      surface(chosen(scheme, {{23, 27, 35}, {255, 253, 249}}, {Qt::black, Qt::white})),
      ink(chosen(scheme, {{236, 232, 225}, {28, 29, 33}}, {Qt::white, Qt::black})),
      ink2(chosen(scheme, {{180, 183, 192}, {79, 82, 96}}, {{228, 229, 234}, {40, 41, 48}})),
      ink3(chosen(scheme, {{143, 147, 161}, {104, 107, 119}}, {{206, 208, 218}, {58, 60, 70}})),
      line(chosen(scheme, {translucent(255, 255, 255, 0.11F), translucent(28, 29, 33, 0.12F)},
                  {translucent(255, 255, 255, 0.6F), translucent(0, 0, 0, 0.6F)})),
      accent(chosen(scheme, {{47, 98, 224}, {37, 83, 199}}, {{110, 150, 255}, {0, 51, 170}})),
      accentSoft(chosen(scheme,
                        {translucent(110, 150, 255, 0.12F), translucent(37, 83, 199, 0.09F)},
                        {translucent(110, 150, 255, 0.25F), translucent(0, 51, 170, 0.16F)})),
      link(chosen(scheme, {{143, 173, 255}, {37, 83, 199}}, {{170, 195, 255}, {0, 51, 170}})),
      thread(chosen(scheme, {{224, 162, 74}, {201, 130, 42}}, {{255, 190, 90}, {140, 80, 0}}))
{
}

} // namespace tidewick
