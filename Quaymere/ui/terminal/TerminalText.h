// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QList>
#include <QString>

// Measures the room that a line of text takes on a terminal. Terminals differ in the width of new
// and joined emoji. We add up the parts, which is the most that any terminal takes.

namespace tidewick::TerminalText {

/// Width in columns.
int columns(const QString &text);

/// Returns the text, or as much of it as fits followed by "…". Never splits a character.
QString elided(const QString &text, int columns);

/// Wraps the text to lines of at most this width. Lines break between words, or within a word that
/// is longer than a line.
QList<QString> wrapped(const QString &text, int columns);

/// Returns how many screen lines the text takes if the terminal wraps lines that are too long.
int wrappedLines(const QString &text, int columns);

} // namespace tidewick::TerminalText
