// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QString>

// Texts of the node and of its log as people see them: plain, whatever is in them.

namespace tidewick::DisplayText {

/// On one line: control characters and line breaks become spaces, and characters that would turn
/// the direction of the text around them are left out.
QString singleLine(const QString &text);

/// At most `limit` characters as a person counts them, the last one being "…" where some are left
/// out.
QString elided(const QString &text, qsizetype limit);

} // namespace tidewick::DisplayText
