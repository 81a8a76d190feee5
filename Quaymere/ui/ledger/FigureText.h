// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QTextLayout>

class QPainter;

namespace tidewick {

/// A line of text with figures that change while it is shown. Its digits are equally wide, so that
/// only the digits that change move. It is laid out anew only if it differs from the last time.
class FigureText
{
public:
    /// Draws the text, vertically centred in the rectangle and elided to its width. The horizontal
    /// alignment does not depend on the layout direction.
    void draw(QPainter &painter, const QRect &rect, Qt::Alignment alignment, const QFont &font,
              const QColor &color, const QString &text) const;

    /// The width of the text drawn in a rectangle with this much room, in pixels.
    qreal width(const QString &text, const QFont &font, int room) const;

private:
    void layOut(const QString &text, const QFont &font, int room) const;
    void placeLine(const QString &text) const;

    mutable QTextLayout m_layout;
    /// The text before it was elided.
    mutable QString m_text;
    /// The available width, in pixels, for which the text was laid out.
    mutable int m_room = -1;
    mutable qreal m_indent = 0;
    mutable qreal m_width = 0;
};

} // namespace tidewick
