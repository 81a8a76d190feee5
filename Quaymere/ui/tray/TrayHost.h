// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QObject>

#include <memory>

namespace tidewick {

/// Whether anything on this desktop shows tray items. To be asked before a tray item is made: one
/// made too early is not shown by a StatusNotifier host that comes later. Main thread only.
class TrayHost final : public QObject
{
    Q_OBJECT

public:
    enum class Kind {
        None,
        StatusNotifier, ///< Over D-Bus: menu and icon are the host's to draw.
        XEmbed,         ///< An X11 window of ours inside the panel.
    };

    explicit TrayHost(QObject *parent = nullptr);
    ~TrayHost() override;

    /// None until the desktop has been asked. A desktop with both kinds counts as StatusNotifier.
    Kind kind() const;

    /// Whether there is a host of that kind, whatever else there is.
    bool has(Kind kind) const;

signals:
    void changed();

private:
    class Private;
    std::unique_ptr<Private> m_private;
};

} // namespace tidewick
