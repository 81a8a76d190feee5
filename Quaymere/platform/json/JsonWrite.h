// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QString>

class QJsonObject;

namespace tidewick::JsonWrite {

/// An object as indented text: members sorted by name, two spaces per level, "name" : value,
/// slashes escaped, no line break at the end. Numbers read back as the same numbers. Byte for byte
/// the format of Foundation's JSONSerialization (pretty-printed, sorted keys), so that answers
/// copied on Linux and on a Mac can be compared as text; QJsonDocument's indented form differs in
/// spacing, escapes and numbers.
QString pretty(const QJsonObject &object);

} // namespace tidewick::JsonWrite
