// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QString>

class QJsonObject;

namespace tidewick::JsonWrite {

/// A person's form of an object: members sorted by name, two spaces a level, "name" : value,
/// slashes escaped, no line break at the end. Numbers read back as the same numbers.
QString pretty(const QJsonObject &object);

} // namespace tidewick::JsonWrite
