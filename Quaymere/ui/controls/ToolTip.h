// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QString>

namespace tidewick::ToolTip {

/// Returns a text for use as a Qt tooltip. Tooltips interpret as markup whatever looks like it, so
/// the result is markup that shows the text verbatim. Long words get break opportunities, and the
/// text is cut before it would fill the screen.
QString plain(const QString &text);

} // namespace tidewick::ToolTip
