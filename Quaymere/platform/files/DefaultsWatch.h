// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include "platform/files/Defaults.h"

#include <QFileSystemWatcher>
#include <QObject>

#include <array>
#include <optional>

namespace tidewick {

/// Reports changes to a store's file, whether made by this process, by another one or by hand, and
/// whether in place or by replacing the file. The store has read the change before the signal is
/// emitted. Owned by the interested object; main thread only.
class DefaultsWatch final : public QObject
{
    Q_OBJECT

public:
    explicit DefaultsWatch(Defaults defaults, QObject *parent = nullptr);

signals:
    void changed();

private:
    /// Identifies a version of the file: device, inode, size, and the time of the last status
    /// change in seconds and nanoseconds. Nothing if the file does not exist.
    using State = std::optional<std::array<qint64, 5>>;

    State state() const;
    void look();
    void watch();

    Defaults m_defaults;
    QFileSystemWatcher m_watcher;
    State m_seen;
};

} // namespace tidewick
