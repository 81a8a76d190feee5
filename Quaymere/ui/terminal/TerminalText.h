// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QList>
#include <QString>

// How much room one line of text takes on a terminal. Terminals differ in new emoji and in joined
// ones; counted are the parts, which is the most that any of them takes.

namespace tidewick::TerminalText {

/// Width in columns.
int columns(const QString &text);

/// The text, or as much of it as fits with "…" at its end. No character is cut.
QString elided(const QString &text, int columns);

/// The text on lines of at most that width, broken between words and, where a word is longer than
/// a line, within it.
QList<QString> wrapped(const QString &text, int columns);

/// How many lines of the screen the text takes where lines that are too long go on below.
int wrappedLines(const QString &text, int columns);

} // namespace tidewick::TerminalText
