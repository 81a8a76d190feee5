// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QString>

// Prepares texts from the node and its log for display: as plain text, whatever they contain.

namespace tidewick::DisplayText {

/// The text on one line: control characters and line breaks become spaces, and characters that
/// would change the direction of the text around them are removed.
QString singleLine(const QString &text);

/// At most `limit` characters as a person counts them. If some are left out, the last one is "…".
QString elided(const QString &text, qsizetype limit);

} // namespace tidewick::DisplayText
