// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QByteArray>
#include <QString>

#include <optional>

namespace tidewick::PropertyList {

/// The text that a property list in XML has under that key of its outermost dictionary. Nothing
/// when there is no such key, when its value is no text, when this is no property list, or when it
/// is a very large one or declares entities.
std::optional<QString> text(const QByteArray &xml, QStringView key);

} // namespace tidewick::PropertyList
