// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QRectF>
#include <QStringList>

class QWidget;

namespace tidewick {

/// A text as a widget draws it, elided or not, the place that its letters take there, and what of
/// that they colour. Some fonts have letters that are higher than their lines.
struct DrawnText
{
    QString text;
    QRectF rect;
    QRectF ink;
};

/// What a widget draws itself, without its children, in the order in which it does.
QList<DrawnText> drawnTexts(QWidget &widget);

/// The same, the texts alone.
QStringList drawnLines(QWidget &widget);

/// What is wrong with the texts that a window shows, and with the places of its parts: texts cut,
/// outside of what shows them, or one on another; empty where all is well.
QStringList textFlaws(QWidget &window);

} // namespace tidewick
