// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "platform/json/JsonRead.h"

#include <QJsonDocument>

namespace tidewick::JsonRead {

std::optional<QJsonObject> parseObject(const QByteArray &text)
{
    const QJsonDocument document = QJsonDocument::fromJson(text);
    return document.isObject() ? std::optional(document.object()) : std::nullopt;
}

QJsonValue member(const QJsonObject &object, QLatin1String name)
{
    const auto found = object.constFind(name);
    // Qt 6.8 also finds names that continue with a NUL.
    if (found == object.constEnd() || found.key().size() != name.size())
        return QJsonValue::Undefined;
    return *found;
}

std::optional<QString> string(const QJsonValue &value)
{
    return value.isString() ? std::optional(value.toString()) : std::nullopt;
}

std::optional<QJsonObject> object(const QJsonValue &value)
{
    return value.isObject() ? std::optional(value.toObject()) : std::nullopt;
}

std::optional<qint64> integer(const QJsonValue &value)
{
    if (value.isBool())
        return value.toBool() ? 1 : 0;
    // toInteger returns its argument for fractions and for values that do not fit.
    if (value.isDouble() && value.toInteger(0) == value.toInteger(1))
        return value.toInteger();
    return std::nullopt;
}

std::optional<double> number(const QJsonValue &value)
{
    if (value.isBool())
        return value.toBool() ? 1.0 : 0.0;
    return value.isDouble() ? std::optional(value.toDouble()) : std::nullopt;
}

std::optional<bool> boolean(const QJsonValue &value)
{
    if (value.isBool())
        return value.toBool();
    const std::optional<qint64> figure = integer(value);
    if (!figure || *figure < 0 || *figure > 1)
        return std::nullopt;
    return *figure == 1;
}

} // namespace tidewick::JsonRead
