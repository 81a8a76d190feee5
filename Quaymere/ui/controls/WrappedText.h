// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QMargins>
#include <QTextLayout>

class QPainter;

namespace tidewick {

/// A plain text wrapped to its width. A word longer than a line, such as a path, is broken
/// anywhere. An endless text is cut beyond any reader's patience, so that layout stays fast. Every
/// glyph has enough room, even if the font has glyphs that are higher or wider than its metrics
/// report.
class WrappedText
{
public:
    struct Range
    {
        int start = 0;
        int end = 0;

        bool isEmpty() const { return start == end; }
        bool operator==(const Range &) const = default;
    };

    /// Takes the space at each side, and the space above and below together, in points.
    WrappedText(int sideMargin, int padding) : m_sideMargin(sideMargin), m_padding(padding) {}

    void set(const QString &text);
    void setFont(const QFont &font);

    QFont font() const { return m_layout.font(); }

    /// Sets the line height relative to the font's; 1 by default.
    void setLineHeight(qreal factor);

    /// Gives all digits the same advance, so that the texts around them stay in place when they
    /// change. The default is the font's own advances.
    void setTabular();

    /// Aligns the text to the end of the line instead of its start, the default. The direction of
    /// the interface decides which side that is.
    void setAlignedToEnd(bool toEnd);

    /// The text shown, which may be cut.
    QString text() const { return m_layout.text(); }

    /// The whole text if only a part of it is shown; otherwise empty.
    QString cutText() const { return m_cutText; }

    /// The height of the shown text at this width, space included.
    int height(int width) const;

    /// The distance from the top to the first baseline at this width.
    qreal baseline(int width) const;

    /// The number of lines at this width.
    int lineCount(int width) const;

    /// The width of the shown text on one line, space included. Not for tabular figures.
    int naturalWidth() const;

    /// Draws the text at this width, aligned for the layout direction.
    void draw(QPainter &painter, int width, Qt::LayoutDirection direction,
              const QList<QTextLayout::FormatRange> &formats = {}) const;

    /// The text position nearest to a point.
    int positionAt(const QPointF &point) const;

    Range wordAt(int position) const;

private:
    void layOut(int width, Qt::LayoutDirection direction) const;
    qreal indentOf(int start) const;
    QMargins placeLines(int width) const;

    int m_sideMargin;
    int m_padding;
    qreal m_lineHeight = 1;
    bool m_alignedToEnd = false;
    bool m_isTabular = false;
    QString m_cutText;
    /// Laid out on demand, for the width and direction below.
    mutable QTextLayout m_layout;
    mutable QPointF m_topLeft;
    mutable int m_width = -1;
    mutable Qt::LayoutDirection m_direction = Qt::LeftToRight;
    mutable qreal m_height = 0;
};

} // namespace tidewick
