// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "ui/terminal/LiveRows.h"

#include "ui/terminal/TerminalText.h"

#include <algorithm>

namespace tidewick {

namespace {

// Control sequences understood by every terminal since the VT102.
constexpr char clearBelow[] = "\x1b[J";
constexpr char clearRestOfLine[] = "\x1b[K";
constexpr char dim[] = "\x1b[2m";
constexpr char plain[] = "\x1b[m";
constexpr char nextLine[] = "\r\n";
// Prevents wrapping if the terminal draws a character wider than our count.
constexpr char wrapOff[] = "\x1b[?7l";
constexpr char wrapOn[] = "\x1b[?7h";

/// Reduces the rows to those that fit, leaving one line for the cursor.
QList<LiveRow> fitting(QList<LiveRow> rows, TerminalSize size)
{
    const qsizetype most = std::max(1, size.rows - 1);
    if (rows.size() > most)
        rows.removeIf([](const LiveRow &row) { return row.text.isEmpty(); });
    if (rows.size() > most)
        rows.resize(most);
    for (LiveRow &row : rows)
        row.text = TerminalText::elided(row.text, size.columns);
    return rows;
}

QByteArray drawn(const LiveRow &row, int columns)
{
    QByteArray bytes = row.text.toUtf8();
    if (row.dim)
        bytes = dim + bytes + plain;
    // After a row as wide as the terminal, the cursor is still on its last character.
    return TerminalText::columns(row.text) < columns ? bytes + clearRestOfLine + nextLine
                                                     : clearRestOfLine + bytes + nextLine;
}

} // namespace

QByteArray LiveRows::redraw(const QList<LiveRow> &rows, const QList<QString> &above,
                            TerminalSize size)
{
    QList<LiveRow> next = fitting(rows, size);
    if (above.isEmpty() && next == m_drawn && size == m_size)
        return {};
    QByteArray bytes = toTop(size.columns);
    if (!above.isEmpty())
        bytes += clearBelow;
    for (const QString &line : above)
        bytes += line.toUtf8() + nextLine;
    bytes += wrapOff;
    for (const LiveRow &row : next)
        bytes += drawn(row, size.columns);
    m_drawn = std::move(next);
    m_size = size;
    return bytes + clearBelow + wrapOn;
}

QByteArray LiveRows::finish()
{
    if (m_drawn.isEmpty())
        return {};
    m_drawn.clear();
    // Keys pressed, above all Ctrl-C, have left their echo beside the cursor.
    return QByteArray("\r") + clearBelow + wrapOn;
}

QByteArray LiveRows::toTop(int columns) const
{
    int lines = 0;
    for (const LiveRow &row : m_drawn)
        lines += TerminalText::wrappedLines(row.text, columns);
    return lines == 0 ? QByteArray("\r") : "\r\x1b[" + QByteArray::number(lines) + 'A';
}

} // namespace tidewick
