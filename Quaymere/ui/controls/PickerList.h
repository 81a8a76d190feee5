// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

class QComboBox;

namespace tidewick {

/// Gives a picker a popup list that is painted in the picker's colours, whatever the style, with a
/// tick at the current entry.
void makePickerList(QComboBox &picker);

} // namespace tidewick
