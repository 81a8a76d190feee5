// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QMargins>
#include <QTextLayout>

class QPainter;

namespace tidewick {

/// A plain text on as many lines as its width takes, broken within a word where a word is longer
/// than a line, as paths are. A text without end is cut where nobody reads on, so that laying it
/// out stays quick. There is room for every letter, also where a font has letters that are higher
/// or wider than it says.
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

    /// With that much space at its sides and, above and below together, around it, in points.
    WrappedText(int sideMargin, int padding) : m_sideMargin(sideMargin), m_padding(padding) {}

    void set(const QString &text);
    void setFont(const QFont &font);

    QFont font() const { return m_layout.font(); }

    /// Lines this much higher than the font asks for; 1 at first.
    void setLineHeight(qreal factor);

    /// Begins at the side where the interface begins, as at first, or ends where it ends.
    void setAlignedToEnd(bool toEnd);

    /// What is shown.
    QString text() const { return m_layout.text(); }

    /// More of the text than is shown, as a tool tip that shows it as it is; empty where all of it
    /// is shown.
    QString toolTip() const { return m_toolTip; }

    /// The height, space included, when all of it is as wide as that.
    int height(int width) const;

    /// The width, space included, of all of it on one line.
    int naturalWidth() const;

    /// Draws it in that width, beginning at the side where the interface does.
    void draw(QPainter &painter, int width, Qt::LayoutDirection direction,
              const QList<QTextLayout::FormatRange> &formats = {}) const;

    /// The place in the text that is nearest to a point.
    int positionAt(const QPointF &point) const;

    Range wordAt(int position) const;

private:
    void layOut(int width, Qt::LayoutDirection direction) const;
    QMargins placeLines(int width) const;

    int m_sideMargin;
    int m_padding;
    qreal m_lineHeight = 1;
    bool m_alignedToEnd = false;
    QString m_toolTip;
    /// Laid out when it is needed, for the width and direction below.
    mutable QTextLayout m_layout;
    mutable QPointF m_topLeft;
    mutable int m_width = -1;
    mutable Qt::LayoutDirection m_direction = Qt::LeftToRight;
    mutable qreal m_height = 0;
};

} // namespace tidewick
