// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "platform/files/DefaultsWatch.h"

#include "platform/files/Files.h"

#include <filesystem>
#include <utility>

#include <sys/stat.h>

namespace tidewick {

DefaultsWatch::DefaultsWatch(Defaults defaults, QObject *parent)
    : QObject(parent), m_defaults(std::move(defaults))
{
    connect(&m_watcher, &QFileSystemWatcher::fileChanged, this, &DefaultsWatch::look);
    connect(&m_watcher, &QFileSystemWatcher::directoryChanged, this, &DefaultsWatch::look);
    watch();
    m_seen = state();
    m_defaults.refresh();
}

DefaultsWatch::State DefaultsWatch::state() const
{
    struct stat status
    {
    };
    if (::stat(m_defaults.file().c_str(), &status) != 0)
        return std::nullopt;
    return std::array<qint64, 5>{qint64(status.st_dev), qint64(status.st_ino), status.st_size,
                                 status.st_ctim.tv_sec, status.st_ctim.tv_nsec};
}

/// The folder also reports changes to other files, including the lock file of every attempt to
/// write.
void DefaultsWatch::look()
{
    watch();
    const State now = state();
    if (now == m_seen)
        return;
    m_seen = now;
    m_defaults.refresh();
    emit changed();
}

/// Watches the file for changes in place and its folder for a replacement of the file. While the
/// folder does not exist, watches the nearest existing ancestor, in which it may be created.
/// Watches the file again each time, because it may be a different file under the same name.
void DefaultsWatch::watch()
{
    std::filesystem::path folder = m_defaults.file().parent_path();
    std::error_code error;
    while (!std::filesystem::is_directory(folder, error) && folder.has_relative_path())
        folder = folder.parent_path();
    const QString wanted = Files::display(folder);
    if (!m_watcher.directories().contains(wanted)) {
        if (!m_watcher.directories().isEmpty())
            m_watcher.removePaths(m_watcher.directories());
        m_watcher.addPath(wanted);
    }
    const QString file = Files::display(m_defaults.file());
    m_watcher.removePath(file);
    if (std::filesystem::exists(m_defaults.file(), error))
        m_watcher.addPath(file);
}

} // namespace tidewick
