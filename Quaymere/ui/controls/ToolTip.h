// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QString>

namespace tidewick::ToolTip {

/// A text for Qt's tool tips, which take what looks like markup for markup: as markup that shows
/// the text as it is, with places to break long words, and cut before it would fill the screen.
QString plain(const QString &text);

} // namespace tidewick::ToolTip
