// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QList>
#include <QStringView>

namespace tidewick::Lines {

/// The lines of a text that are not empty, without their ends, which are those that Unicode knows.
/// Views into the text.
QList<QStringView> of(QStringView text);

} // namespace tidewick::Lines
