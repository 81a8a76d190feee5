// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QByteArray>
#include <QList>
#include <QString>
#include <QStringDecoder>

namespace tidewick {

/// Models what a user sees of the bytes sent to a terminal, by interpreting the control sequences
/// that the application uses. Character widths are those of the C library. The parts of a joined
/// character stand side by side, as on terminals that do not join them.
///
/// When the width changes, lines are wrapped again the way most current terminals do it. Lines that
/// do not fit the height move into the history and return from it.
class ScreenModel
{
public:
    ScreenModel(int columns, int rows) : m_columns(columns), m_rows(rows) {}

    void feed(const QByteArray &bytes);
    void resize(int columns, int rows);

    /// The lines on the screen, from the top down to the last one that is not blank.
    QList<QString> screen() const;
    /// The lines on the screen and all lines that have scrolled off before them.
    QList<QString> everything() const;
    /// The line and column of the cursor, counted from the top of the screen.
    QPair<qsizetype, int> cursor() const { return {m_line - m_top, m_column}; }
    /// The dim text in everything().
    QList<QString> dimTexts() const;
    /// Whether long lines wrap, as a shell expects.
    bool wraps() const { return m_wraps; }
    /// Control characters and sequences that this application must not send.
    QList<QString> strangeSequences() const { return m_strange; }

private:
    /// One column of a line. The text is null in the second column of a wide character.
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
    /// The history followed by the screen, which begins at m_top.
    QList<Line> m_lines{Line{}};
    qsizetype m_top = 0;
    qsizetype m_line = 0;
    int m_column = 0;
    bool m_wraps = true;
    bool m_dim = false;

    QStringDecoder m_decoder{QStringDecoder::Utf8};
    /// The current control sequence, from its escape character on; empty outside a sequence.
    QString m_sequence;
    QList<QString> m_strange;
};

} // namespace tidewick
