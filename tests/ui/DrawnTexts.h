// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QRectF>
#include <QStringList>

class QWidget;

namespace tidewick {

/// A text as a widget draws it, possibly elided.
struct DrawnText
{
    QString text;
    /// The line box.
    QRectF rect;
    qreal baseline = 0;
    /// What the glyphs cover. In some fonts, glyphs are taller than their lines.
    QRectF ink;
};

/// The texts that a widget itself draws, without its children, in drawing order.
QList<DrawnText> drawnTexts(QWidget &widget);

/// The same, as plain strings.
QStringList drawnLines(QWidget &widget);

/// Describes each text of the window that is elided, reaches outside its widget or overlaps another
/// text. Empty if there are none.
QStringList textFlaws(QWidget &window);

} // namespace tidewick
