// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QString>

#include <exception>
#include <filesystem>

namespace tidewick {

/// The text of the exception that the action throws.
template <typename Action>
QString failureOf(Action action)
{
    try {
        action();
    } catch (const std::exception &error) {
        return QString::fromUtf8(error.what());
    }
    return QStringLiteral("no failure");
}

/// The text of a failure that concerns a file: the file's path and the reason.
inline QString failureWith(const std::filesystem::path &path, const char *reason)
{
    return QString::fromStdString(path.string()) + QLatin1String(": ") + QLatin1String(reason);
}

} // namespace tidewick
