// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "ui/WrappedText.h"

#include "platform/DisplayText.h"
#include "ui/TextScale.h"
#include "ui/ToolTip.h"

#include <QPainter>
#include <QStyle>
#include <QTextBoundaryFinder>

#include <cmath>

namespace tidewick {

namespace {

constexpr qsizetype shownCharacters = 2000;

} // namespace

void WrappedText::set(const QString &text)
{
    const QString shown = DisplayText::singleLine(DisplayText::elided(text, shownCharacters));
    m_toolTip = shown == text ? QString() : ToolTip::plain(text);
    m_layout.setText(shown);
    m_width = -1;
}

void WrappedText::setFont(const QFont &font)
{
    m_layout.setFont(font);
    m_width = -1;
}

void WrappedText::setLineHeight(qreal factor)
{
    m_lineHeight = factor;
    m_width = -1;
}

void WrappedText::setAlignedToEnd(bool toEnd)
{
    m_alignedToEnd = toEnd;
    m_width = -1;
}

/// As Qt lays a line out, but for Qt 6.8 at ratio 1: there metrics of hinted fonts are rounded
/// before.
int WrappedText::lineHeight(const QFont &font)
{
    QFont unhinted(font);
    unhinted.setHintingPreference(QFont::PreferNoHinting);
    return int(std::ceil(QFontMetricsF(unhinted).height()));
}

int WrappedText::naturalWidth() const
{
    // Layouts need a little more than metrics say where letters lean.
    return QFontMetrics(m_layout.font()).horizontalAdvance(m_layout.text()) + 1
           + 2 * TextScale::scaled(m_layout.font(), m_sideMargin);
}

int WrappedText::height(int width) const
{
    layOut(width, m_direction);
    return int(std::ceil(m_height)) + TextScale::scaled(m_layout.font(), m_padding);
}

void WrappedText::draw(QPainter &painter, int width, Qt::LayoutDirection direction,
                       const QList<QTextLayout::FormatRange> &formats) const
{
    layOut(width, direction);
    m_layout.draw(&painter, m_topLeft, formats);
}

int WrappedText::positionAt(const QPointF &point) const
{
    const QPointF inside = point - m_topLeft;
    for (int i = 0; i < m_layout.lineCount(); ++i) {
        const QTextLine line = m_layout.lineAt(i);
        if (inside.y() < line.rect().bottom() || i == m_layout.lineCount() - 1)
            return line.xToCursor(inside.x());
    }
    return 0;
}

WrappedText::Range WrappedText::wordAt(int position) const
{
    const QString text = m_layout.text();
    QTextBoundaryFinder boundaries(QTextBoundaryFinder::Word, text);
    boundaries.setPosition(position);
    if (!boundaries.isAtBoundary() || position == text.size())
        boundaries.toPreviousBoundary();
    const auto start = std::max<qsizetype>(0, boundaries.position());
    const auto end = boundaries.toNextBoundary();
    return {int(start), int(end < 0 ? text.size() : end)};
}

void WrappedText::layOut(int width, Qt::LayoutDirection direction) const
{
    if (m_width == width && m_direction == direction)
        return;
    m_width = width;
    m_direction = direction;
    const int side = TextScale::scaled(m_layout.font(), m_sideMargin);
    m_topLeft = QPoint(side, TextScale::scaled(m_layout.font(), m_padding) / 2);
    // The text runs in its own direction; it begins where the interface begins.
    const Qt::Alignment anchor = m_alignedToEnd ? Qt::AlignRight : Qt::AlignLeft;
    QTextOption option(QStyle::visualAlignment(direction, anchor) | Qt::AlignAbsolute);
    option.setTextDirection(m_layout.text().isRightToLeft() ? Qt::RightToLeft : Qt::LeftToRight);
    option.setWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
    m_layout.setTextOption(option);
    m_height = 0;
    const qreal leastHeight = lineHeight(m_layout.font());
    m_layout.beginLayout();
    for (QTextLine line = m_layout.createLine(); line.isValid(); line = m_layout.createLine()) {
        line.setLineWidth(std::max(1, width - 2 * side));
        // Letters that the font does not have come from another one, which may be higher.
        const qreal height = std::max(leastHeight, line.height());
        const qreal space = height * (m_lineHeight - 1);
        line.setPosition({0, m_height + space / 2});
        m_height += height + space;
    }
    m_layout.endLayout();
}

} // namespace tidewick
