// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QJsonObject>
#include <QJsonValue>

#include <optional>

// Reads members of untrusted messages. A member that is absent, null or of the wrong type counts as
// missing in all three cases.

namespace tidewick::JsonRead {

/// Parses the text as a JSON object. Nothing if it is not valid JSON or not an object.
std::optional<QJsonObject> parseObject(const QByteArray &text);

/// The member with exactly this name; undefined if there is none.
QJsonValue member(const QJsonObject &object, QLatin1String name);

std::optional<QString> string(const QJsonValue &value);

std::optional<QJsonObject> object(const QJsonValue &value);

/// A number without a fraction that fits 64 bits; true and false count as 1 and 0.
std::optional<qint64> integer(const QJsonValue &value);

/// A number; true and false count as 1 and 0.
std::optional<double> number(const QJsonValue &value);

/// true, false, or exactly 1 or 0.
std::optional<bool> boolean(const QJsonValue &value);

} // namespace tidewick::JsonRead
