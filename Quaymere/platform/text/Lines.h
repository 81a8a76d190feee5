// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QList>
#include <QStringView>

namespace tidewick::Lines {

/// The non-empty lines of a text, without their line endings. Recognises all line endings that
/// Unicode defines. The results are views into the text.
QList<QStringView> of(QStringView text);

} // namespace tidewick::Lines
