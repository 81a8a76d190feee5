// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "ui/controls/WrappedText.h"

#include "platform/text/DisplayText.h"
#include "ui/controls/TabularFigures.h"
#include "ui/controls/TextScale.h"

#include <QGlyphRun>
#include <QPainter>
#include <QPainterPath>
#include <QRawFont>
#include <QStyle>
#include <QTextBoundaryFinder>

#include <algorithm>
#include <cmath>

namespace tidewick {

namespace {

constexpr qsizetype shownCharacters = 2000;

/// The fraction of a pixel that is too small to be seen.
constexpr qreal unseen = 0.05;

/// Rounds up to whole pixels, so that nothing visible lies beyond them.
int whole(qreal reach)
{
    return std::max(0, int(std::ceil(reach - unseen)));
}

QRectF outlineOf(const QFont &font, const QString &text)
{
    QPainterPath letters;
    letters.addText(0, 0, font, text);
    return letters.boundingRect();
}

/// Returns how far the glyphs of a line extend beyond its height and width, in whole pixels. Call
/// this during layout. It measures outlines, which are the same at every device pixel ratio.
/// Hinting may add another pixel to glyphs that reach the line's top edge.
QMargins reachOf(const QTextLine &line)
{
    constexpr qreal hinting = 0.5;
    const QRectF room(line.x(), line.y(), line.width(), line.height());
    QRectF ink;
    for (const QGlyphRun &run : line.glyphRuns()) {
        const QRawFont font = run.rawFont();
        const QList<quint32> letters = run.glyphIndexes();
        const QList<QPointF> places = run.positions();
        for (qsizetype i = 0; i < letters.size(); ++i) {
            // The hinted rectangle is already known. Outlines take far longer to compute, and few
            // glyphs need them.
            const QRectF hinted = font.boundingRect(letters[i]).translated(places[i]);
            if (!hinted.isEmpty() && !room.contains(hinted))
                ink |= font.pathForGlyph(letters[i]).boundingRect().translated(places[i]);
        }
    }
    if (ink.isEmpty())
        return {};
    const qreal top = line.y() - ink.top();
    return {whole(line.x() - ink.left()), top > -unseen ? whole(top + hinting) : 0,
            whole(ink.right() - line.x() - line.width()),
            whole(ink.bottom() - line.y() - line.height())};
}

} // namespace

void WrappedText::set(const QString &text)
{
    const QString shown = DisplayText::singleLine(DisplayText::elided(text, shownCharacters));
    m_cutText = shown == text ? QString() : text;
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

void WrappedText::setTabular()
{
    m_isTabular = true;
    m_width = -1;
}

void WrappedText::setAlignedToEnd(bool toEnd)
{
    m_alignedToEnd = toEnd;
    m_width = -1;
}

int WrappedText::naturalWidth() const
{
    const QFont font = m_layout.font();
    const QString text = m_layout.text();
    const QFontMetrics metrics(font);
    const QRectF first = outlineOf(font, text.left(1));
    const QRectF last = outlineOf(font, text.right(1));
    const int lean =
        whole(-first.left()) + whole(last.right() - metrics.horizontalAdvance(text.right(1)));
    // Layouts need slightly more than the metrics report if glyphs lean.
    return metrics.horizontalAdvance(text) + 1 + lean + 2 * TextScale::scaled(font, m_sideMargin);
}

int WrappedText::height(int width) const
{
    layOut(width, m_direction);
    return int(std::ceil(m_height)) + TextScale::scaled(m_layout.font(), m_padding);
}

int WrappedText::lineCount(int width) const
{
    layOut(width, m_direction);
    return m_layout.lineCount();
}

qreal WrappedText::baseline(int width) const
{
    if (lineCount(width) == 0)
        return 0;
    const QTextLine first = m_layout.lineAt(0);
    return m_topLeft.y() + first.y() + first.ascent();
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
    // The text keeps its own direction, but its alignment follows the direction of the interface.
    const Qt::Alignment anchor = m_alignedToEnd ? Qt::AlignRight : Qt::AlignLeft;
    QTextOption option(QStyle::visualAlignment(direction, anchor) | Qt::AlignAbsolute);
    option.setTextDirection(m_layout.text().isRightToLeft() ? Qt::RightToLeft : Qt::LeftToRight);
    option.setWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
    m_layout.setTextOption(option);
    if (m_isTabular)
        m_layout.setFormats(TabularFigures::formats(m_layout.text(), m_layout.font()));
    QMargins sides(side, 0, side, 0);
    const QMargins reach = placeLines(width - 2 * side);
    if (reach.left() > side || reach.right() > side) {
        sides = {std::max(side, reach.left()), 0, std::max(side, reach.right()), 0};
        placeLines(width - sides.left() - sides.right());
    }
    m_topLeft = QPoint(sides.left(), TextScale::scaled(m_layout.font(), m_padding) / 2);
}

/// The space before a line that begins at this position of the text.
qreal WrappedText::indentOf(int start) const
{
    return m_isTabular && start < m_layout.text().size()
               ? TabularFigures::indent(m_layout.text().at(start), m_layout.font())
               : 0;
}

/// Lays out the lines and returns how far glyphs extend beyond the width.
QMargins WrappedText::placeLines(int width) const
{
    const int usual = TextScale::overhang(m_layout.font());
    QMargins all;
    m_height = 0;
    const qreal leastHeight = TextScale::fontHeight(m_layout.font());
    m_layout.beginLayout();
    for (QTextLine line = m_layout.createLine(); line.isValid(); line = m_layout.createLine()) {
        const qreal indent = indentOf(line.textStart());
        line.setLineWidth(std::max(1.0, width - indent));
        const QMargins reach = reachOf(line);
        // Characters missing in the font come from another one, whose lines may be higher.
        const qreal height = std::max(leastHeight, line.height());
        const qreal space = height * (m_lineHeight - 1) / 2;
        const qreal above = std::max({space, qreal(usual), qreal(reach.top())});
        const qreal below = std::max({space, qreal(usual), qreal(reach.bottom())});
        line.setPosition({indent, m_height + above});
        m_height += above + height + below;
        all = all | reach;
    }
    m_layout.endLayout();
    return all;
}

} // namespace tidewick
