// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "ui/ledger/LedgerDrawing.h"

#include "ui/ledger/LedgerMetrics.h"
#include "ui/ledger/Palette.h"

#include <QFontMetrics>
#include <QPainter>

namespace tidewick::LedgerDrawing {

void line(QPainter &painter, const QRect &rect, Qt::Alignment alignment, const QFont &font,
          const QColor &color, const QString &text)
{
    painter.setFont(font);
    painter.setPen(color);
    // The text keeps its own direction.
    const int direction =
        text.isRightToLeft() ? Qt::TextForceRightToLeft : Qt::TextForceLeftToRight;
    painter.drawText(rect,
                     int(alignment | Qt::AlignVCenter | Qt::AlignAbsolute) | Qt::TextSingleLine
                         | direction,
                     QFontMetrics(font).elidedText(text, Qt::ElideRight, rect.width()));
}

void mark(QPainter &painter, const QRect &row, const LedgerMetrics &metrics, const QColor &color)
{
    painter.setPen(Qt::NoPen);
    painter.setBrush(color);
    painter.drawRoundedRect(QRectF(row.left(), row.top() + (row.height() - metrics.mark) / 2.0,
                                   metrics.mark, metrics.mark),
                            metrics.markRadius, metrics.markRadius);
}

QColor bar(const Palette &colors)
{
    // On a light card, the accent itself is left to the bar under the pointer.
    const bool isLight = colors.surface.lightness() > colors.ink.lightness();
    return mixed(colors.surface, colors.accent, isLight ? 0.65F : 1);
}

QColor oldBar(const Palette &colors)
{
    return baseline(colors);
}

QColor baseline(const Palette &colors)
{
    return mixed(colors.surface, colors.ink3, 0.75F);
}

QColor mixed(const QColor &from, const QColor &to, float part)
{
    const auto between = [part](float a, float b) { return a + (b - a) * part; };
    return QColor::fromRgbF(between(from.redF(), to.redF()), between(from.greenF(), to.greenF()),
                            between(from.blueF(), to.blueF()));
}

QColor over(const QColor &color, const QColor &ground)
{
    return mixed(ground, color, color.alphaF());
}

} // namespace tidewick::LedgerDrawing
