// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "ui/ledger/LedgerTile.h"

#include "ui/controls/TextScale.h"

#include <QPaintEvent>
#include <QPainter>

namespace tidewick {

LedgerTile::LedgerTile(const LedgerLook &look, const QString &label, QWidget *parent)
    : LedgerCard(look, {}, parent), m_label(label)
{
}

void LedgerTile::setFigure(const QString &figure, const QString &unit)
{
    if (figure == m_figure && unit == m_unit)
        return;
    m_figure = figure;
    m_unit = unit;
    setAccessibleName(QStringLiteral("%1: %2 %3").arg(m_label, figure, unit).trimmed());
    update();
}

void LedgerTile::paintEvent(QPaintEvent *event)
{
    QPainter painter(this);
    paintCard(painter, event->rect());

    const int caption = TextScale::lineHeight(metrics().caption);
    QRect line(metrics().cardSide, metrics().tileTop, width() - 2 * metrics().cardSide, caption);
    const Qt::Alignment side = visual(Qt::AlignLeft);
    paintLine(painter, line, Qt::AlignLeft, metrics().caption, colors().ink3, m_label);
    line.moveTop(height() - metrics().tileTop - caption);
    m_unitText.draw(painter, visual(line), side, metrics().caption, colors().ink3, m_unit);
    const QRect middle(line.left(), metrics().tileTop + caption, line.width(),
                       height() - 2 * (metrics().tileTop + caption));
    m_figureText.draw(painter, visual(middle), side, metrics().figure, figureColor(), m_figure);
}

} // namespace tidewick
