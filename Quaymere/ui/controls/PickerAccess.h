// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

namespace tidewick {

class Picker;

/// A picker as screen readers see it: a combo box with the picked entry as its text, and the list
/// of its entries below it.
namespace PickerAccess {

/// Registers accessible interfaces for pickers. Repeated calls are harmless.
void install();

/// Reports the picked entry as the one in focus, whether the list is open or not.
void tellEntry(Picker &picker);

/// Reports that the list has opened or closed.
void tellListState(Picker &picker);

} // namespace PickerAccess

} // namespace tidewick
