// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QColor>

namespace tidewick {

/// The ledger window's colours, in sRGB, for the desktop's dark or light scheme.
struct Palette
{
    explicit Palette(bool dark);

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
