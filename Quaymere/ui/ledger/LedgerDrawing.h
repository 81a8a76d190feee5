// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QColor>
#include <QFont>
#include <QRect>

class QPainter;

namespace tidewick {

class LedgerMetrics;
struct Palette;

/// Drawing shared by several parts of the ledger window.
namespace LedgerDrawing {

/// Draws one line of text, vertically centred in the rectangle and elided to its width. The
/// alignment does not depend on the layout direction.
void line(QPainter &painter, const QRect &rect, Qt::Alignment alignment, const QFont &font,
          const QColor &color, const QString &text);

/// Draws the square in a transaction type's colour, at the left of its row.
void mark(QPainter &painter, const QRect &row, const LedgerMetrics &metrics, const QColor &color);

/// The colours of a bar, of one that is no longer current, and of the line that bars stand on. They
/// have a contrast of at least 3 against the card.
QColor bar(const Palette &colors);
QColor oldBar(const Palette &colors);
QColor baseline(const Palette &colors);

/// Returns the colour at this fraction of the way between two colours.
QColor mixed(const QColor &from, const QColor &to, float part);

/// Returns the look of a translucent colour on this background.
QColor over(const QColor &color, const QColor &ground);

} // namespace LedgerDrawing

} // namespace tidewick
