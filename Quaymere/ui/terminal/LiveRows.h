// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QByteArray>
#include <QList>
#include <QString>

namespace tidewick {

struct TerminalSize
{
    int columns;
    int rows;

    bool operator==(const TerminalSize &) const = default;
};

/// A plain text without control characters, of any length.
struct LiveRow
{
    QString text;
    bool dim = false;

    bool operator==(const LiveRow &) const = default;
};

/// Rows of text that stay in place on a terminal while they change. Keeps track of the rows on the
/// screen and produces the bytes that update them. The cursor rests on the line below the rows.
///
/// No row wraps, and there are never more rows than the terminal shows: blank ones are dropped
/// first, then those at the end. When the terminal becomes narrower, the rows are assumed to have
/// wrapped, as on most terminals. On a terminal that cuts them instead, lines above the rows are
/// overwritten.
class LiveRows
{
public:
    /// Returns the bytes that replace the current rows with these; empty if nothing changes. The
    /// lines `above` are printed over the rows at their full length and scroll away.
    QByteArray redraw(const QList<LiveRow> &rows, const QList<QString> &above, TerminalSize size);

    /// Returns the bytes that leave the rows in place and the cursor on a fresh line.
    QByteArray finish();

private:
    QByteArray toTop(int columns) const;

    QList<LiveRow> m_drawn;
    TerminalSize m_size{};
};

} // namespace tidewick
