// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QColor>

namespace tidewick {

/// The colour of a transaction type, the same in light and dark.
QColor colorFor(QStringView type);

} // namespace tidewick
