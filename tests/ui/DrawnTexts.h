// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QRectF>
#include <QStringList>

class QWidget;

namespace tidewick {

/// A text as a widget draws it, elided or not, and the place that its letters take there.
struct DrawnText
{
    QString text;
    QRectF rect;
};

/// What a widget draws itself, without its children, in the order in which it does.
QList<DrawnText> drawnTexts(QWidget &widget);

/// The same, the texts alone.
QStringList drawnLines(QWidget &widget);

} // namespace tidewick
