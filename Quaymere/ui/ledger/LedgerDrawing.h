// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QColor>
#include <QFont>
#include <QRect>

class QPainter;

namespace tidewick {

class LedgerMetrics;

/// What several parts of the ledger window draw.
namespace LedgerDrawing {

/// One line of text in the middle of the rectangle's height, cut to its width.
void line(QPainter &painter, const QRect &rect, Qt::Alignment alignment, const QFont &font,
          const QColor &color, const QString &text);

/// The square in a transaction type's colour, at the left of its row.
void mark(QPainter &painter, const QRect &row, const LedgerMetrics &metrics, const QColor &color);

/// The colour so far of the way to another.
QColor mixed(const QColor &from, const QColor &to, float part);

/// What is seen of a translucent colour on that ground.
QColor over(const QColor &color, const QColor &ground);

} // namespace LedgerDrawing

} // namespace tidewick
