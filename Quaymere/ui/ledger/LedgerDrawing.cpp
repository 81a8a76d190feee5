// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "ui/ledger/LedgerDrawing.h"

#include "ui/ledger/LedgerMetrics.h"

#include <QFontMetrics>
#include <QPainter>

namespace tidewick::LedgerDrawing {

void line(QPainter &painter, const QRect &rect, Qt::Alignment alignment, const QFont &font,
          const QColor &color, const QString &text)
{
    painter.setFont(font);
    painter.setPen(color);
    painter.drawText(rect, int(alignment | Qt::AlignVCenter) | Qt::TextSingleLine,
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
