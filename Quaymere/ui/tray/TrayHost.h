// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QObject>

#include <memory>

namespace tidewick {

/// Detects whether anything on this desktop shows tray items. Check this before creating a tray
/// item: a StatusNotifier host that starts later does not show an item created too early. Main
/// thread only.
class TrayHost final : public QObject
{
    Q_OBJECT

public:
    enum class Kind {
        None,
        StatusNotifier, ///< Over D-Bus: the host draws menu and icon.
        XEmbed,         ///< An X11 window of ours embedded in the panel.
    };

    explicit TrayHost(QObject *parent = nullptr);
    ~TrayHost() override;

    /// None until the desktop has answered. A desktop with both kinds counts as StatusNotifier.
    Kind kind() const;

    /// Whether a host of this kind exists, whatever else exists.
    bool has(Kind kind) const;

signals:
    void changed();

private:
    class Private;
    std::unique_ptr<Private> m_private;
};

} // namespace tidewick
