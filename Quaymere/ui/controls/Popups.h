// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QColor>

class QPalette;
class QWidget;

// The look of what pops up over windows: menus, lists of choices and tooltips. They are rounded and
// raised, whatever the desktop's style, and painted in colours derived from controlPalette().

namespace tidewick::Popups {

/// The background. In dark it is lighter than a card, because shadows do not show there.
QColor ground(const QPalette &colors);

/// The translucent background of the current row.
QColor currentRow(const QPalette &colors);

/// Gives a popup the look. It must not have been shown yet. The colours are those of the popup
/// itself, or of another widget, which has to outlive it.
void dress(QWidget &popup, const QWidget *colors = nullptr);

/// Gives the look to all tooltips, and to the menus that Qt makes for the texts of windows. May be
/// called more than once.
void dressThoseOfQt();

} // namespace tidewick::Popups
