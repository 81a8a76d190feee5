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

/// Rows of text that stay at their place on a terminal while they change: what stands there, and
/// the bytes that make it something else. The cursor rests on the line below the rows.
///
/// No row wraps, and there are never more of them than the terminal shows: blank ones go first,
/// then those at the end. When the terminal became narrower, the rows are taken to have wrapped, as
/// most terminals do it; on one that cuts instead, lines above the rows are overwritten.
class LiveRows
{
public:
    /// Turns what stands there into these rows; nothing where that is no change. The lines `above`
    /// scroll by over the rows, as long as they are.
    QByteArray redraw(const QList<LiveRow> &rows, const QList<QString> &above, TerminalSize size);

    /// Leaves the rows where they are and the cursor on a fresh line.
    QByteArray finish();

private:
    QByteArray toTop(int columns) const;

    QList<LiveRow> m_drawn;
    TerminalSize m_size{};
};

} // namespace tidewick
