// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include "platform/files/Defaults.h"

#include <QFileSystemWatcher>
#include <QObject>

#include <array>
#include <optional>

namespace tidewick {

/// Tells when somebody has changed the file of a store: this process, another one or a hand, in
/// place or by putting another file there. The store has taken it up by then. Owned by who wants to
/// know; main thread only.
class DefaultsWatch final : public QObject
{
    Q_OBJECT

public:
    explicit DefaultsWatch(Defaults defaults, QObject *parent = nullptr);

signals:
    void changed();

private:
    /// What is another one when the file is: device, inode, size, and the time of the last change
    /// in seconds and nanoseconds. Nothing where there is no file.
    using State = std::optional<std::array<qint64, 5>>;

    State state() const;
    void look();
    void watch();

    Defaults m_defaults;
    QFileSystemWatcher m_watcher;
    State m_seen;
};

} // namespace tidewick
