// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "ui/ledger/FigureText.h"

#include "ui/controls/TabularFigures.h"

#include <QFontMetricsF>
#include <QPainter>

namespace tidewick {

namespace {

constexpr qreal unlimited = 1 << 20;

} // namespace

void FigureText::draw(QPainter &painter, const QRect &rect, Qt::Alignment alignment,
                      const QFont &font, const QColor &color, const QString &text) const
{
    layOut(text, font, rect.width());
    if (m_layout.lineCount() == 0)
        return;
    const qreal left = alignment & Qt::AlignRight ? rect.right() + 1 - m_width : rect.left();
    // Not the line's height, which is rounded up: texts beside this one are not.
    const QTextLine line = m_layout.lineAt(0);
    const qreal top = rect.top() + (rect.height() - line.ascent() - line.descent()) / 2;
    painter.setPen(color);
    m_layout.draw(&painter, {left + m_indent, top});
}

qreal FigureText::width(const QString &text, const QFont &font, int room) const
{
    layOut(text, font, room);
    return m_width;
}

void FigureText::layOut(const QString &text, const QFont &font, int room) const
{
    if (text == m_text && room == m_room && font == m_layout.font())
        return;
    m_text = text;
    m_room = room;
    m_layout.setFont(font);
    placeLine(text);
    if (m_width <= room)
        return;
    const QFontMetricsF metrics(font);
    const qreal added = std::max(0.0, m_width - metrics.horizontalAdvance(text));
    placeLine(metrics.elidedText(text, Qt::ElideRight, room - added));
}

void FigureText::placeLine(const QString &text) const
{
    m_layout.setText(text);
    m_layout.setFormats(TabularFigures::formats(text, m_layout.font()));
    QTextOption option;
    option.setWrapMode(QTextOption::NoWrap);
    option.setTextDirection(text.isRightToLeft() ? Qt::RightToLeft : Qt::LeftToRight);
    // Lines are aligned by whoever draws them.
    option.setAlignment(Qt::AlignLeft | Qt::AlignAbsolute);
    m_layout.setTextOption(option);
    m_indent = text.isEmpty() ? 0 : TabularFigures::indent(text.front(), m_layout.font());
    m_width = m_indent;
    m_layout.beginLayout();
    QTextLine line = m_layout.createLine();
    if (line.isValid()) {
        line.setLineWidth(unlimited);
        m_width += line.horizontalAdvance();
    }
    m_layout.endLayout();
}

} // namespace tidewick
