// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QByteArray>
#include <QList>
#include <QString>
#include <QStringDecoder>

namespace tidewick {

/// What a person sees of the bytes that a terminal is sent: a small interpreter of the control
/// sequences that the application uses. Characters take the columns that the C library says, and
/// parts of a joined character stand side by side, as on terminals that do not join them.
///
/// When the width changes, lines are wrapped anew as most of today's terminals do it; what does not
/// fit the height moves into the history, and comes back from it.
class ScreenModel
{
public:
    ScreenModel(int columns, int rows) : m_columns(columns), m_rows(rows) {}

    void feed(const QByteArray &bytes);
    void resize(int columns, int rows);

    /// The lines on the screen, top to bottom, down to the last one that is not blank.
    QList<QString> screen() const;
    /// Those, and all that have scrolled out before them.
    QList<QString> everything() const;
    /// Line and column of the cursor, counted from the top of the screen.
    QPair<qsizetype, int> cursor() const { return {m_line - m_top, m_column}; }
    /// The dim part of what everything() has.
    QList<QString> dimTexts() const;
    /// Whether a line too long goes on below, as a shell expects to find it.
    bool wraps() const { return m_wraps; }
    /// Control characters and sequences that are not for this application to send.
    QList<QString> strangeSequences() const { return m_strange; }

private:
    /// A column. Where a wide character goes on, the text is null.
    struct Cell
    {
        QString text;
        bool dim = false;
    };
    struct Line
    {
        QList<Cell> cells;
        bool goesOnBelow = false;
    };

    void take(char32_t character);
    void control(char32_t character);
    void sequence(char32_t last);
    void print(char32_t character);
    void lineFeed();
    Line &line();
    static QString textOf(const Line &line);
    QList<QString> linesFrom(qsizetype first) const;

    int m_columns;
    int m_rows;
    /// The history and the screen, which begins at m_top.
    QList<Line> m_lines{Line{}};
    qsizetype m_top = 0;
    qsizetype m_line = 0;
    int m_column = 0;
    bool m_wraps = true;
    bool m_dim = false;

    QStringDecoder m_decoder{QStringDecoder::Utf8};
    /// Since the escape character, where a sequence has begun.
    QString m_sequence;
    QList<QString> m_strange;
};

} // namespace tidewick
