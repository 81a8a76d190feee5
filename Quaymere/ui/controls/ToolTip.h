// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include "ui/controls/Scheme.h"

#include <QString>

class QWidget;

namespace tidewick::ToolTip {

/// Returns a text for use as a Qt tooltip. Tooltips interpret as markup whatever looks like it, so
/// the result is markup that shows the text verbatim. Its lines are broken where they would be
/// tiresome to read, a word without spaces, such as a path, only where it would be very long. The
/// text is cut before it would fill the screen.
QString plain(const QString &text);

/// The same, with a headline above, which may be all there is.
QString titled(const QString &headline, const QString &text);

/// Gives a widget a tooltip with this text, and no tooltip if it is empty. Screen readers read the
/// text as the widget's description; without one, Qt would pass them the markup.
void set(QWidget &widget, const QString &text);

/// Shows tooltips in these colours from now on.
void setScheme(Scheme scheme);

} // namespace tidewick::ToolTip
