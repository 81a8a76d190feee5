// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QDBusConnection>
#include <QUrl>

#include <filesystem>
#include <functional>

class QObject;

namespace tidewick::FileBrowser {

/// The URL of a file or folder, whatever bytes its name contains.
QUrl url(const std::filesystem::path &path);

/// Asks the desktop's file browser to show a file or folder, selected, in its parent folder. Calls
/// `otherwise` if no file browser does that, unless `context` has been destroyed by then.
void reveal(const QDBusConnection &bus, const std::filesystem::path &path, QObject *context,
            const std::function<void()> &otherwise);

} // namespace tidewick::FileBrowser
