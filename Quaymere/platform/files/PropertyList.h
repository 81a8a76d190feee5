// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QByteArray>
#include <QString>

#include <optional>

namespace tidewick::PropertyList {

/// The string under that key in the outermost dictionary of an XML property list. Nothing if there
/// is no such key, its value is not a string, or this is not a property list.
std::optional<QString> text(const QByteArray &xml, QStringView key);

} // namespace tidewick::PropertyList
