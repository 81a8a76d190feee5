// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include "ui/controls/Scheme.h"

#include <QColor>

namespace tidewick {

/// The ledger window's colours, in sRGB.
struct Palette
{
    explicit Palette(const Scheme &scheme);

    /// The window's background.
    QColor bg;
    /// The fill of cards.
    QColor surface;
    /// Text: primary, secondary, tertiary.
    QColor ink;
    QColor ink2;
    QColor ink3;
    /// Hairlines and the borders of cards.
    QColor line;
    /// The highlight and its translucent fill.
    QColor accent;
    QColor accentSoft;
    /// Clickable text.
    QColor link;
    /// The warm second accent.
    QColor thread;
};

} // namespace tidewick
