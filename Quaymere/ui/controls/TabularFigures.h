// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QTextLayout>

// Sets digits on one advance, the widest digit's, so that nothing beside a figure moves when the
// figure changes. Many fonts have digits of different widths, and Qt 6.4 cannot ask a font for its
// tabular ones. Main thread only.

namespace tidewick::TabularFigures {

/// The formats for a layout of this text. Each digit is centred in its cell, without kerning.
QList<QTextLayout::FormatRange> formats(const QString &text, const QFont &font);

/// The space, in pixels, before a line that begins with this character. A layout cannot contain it.
qreal indent(QChar first, const QFont &font);

} // namespace tidewick::TabularFigures
