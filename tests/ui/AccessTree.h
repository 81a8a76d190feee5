// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QString>

class QWidget;

namespace tidewick {

/// A window as a screen reader sees it, as text: a line for each object with role, name, value,
/// description, label and states, indented below its parent; then the objects that the Tab key
/// goes through. Objects that only hold others together are left out, as is everything that
/// depends on fonts and sizes. Moves the focus.
QString accessTree(QWidget &window);

} // namespace tidewick
