// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

class QComboBox;

namespace tidewick {

/// Gives a picker a list that pops up with the look of Popups.h, in the picker's colours, with a
/// tick at the current entry.
void makePickerList(QComboBox &picker);

} // namespace tidewick
