// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include "node/NodeStatus.h"
#include "platform/files/Bundle.h"
#include "ui/icon/StatusIconEngine.h"

#include <QHash>
#include <QIcon>

namespace tidewick {

/// The images for the tray: the application's mark with a badge that shows the phase at a glance,
/// over its corner in square slots and beside it elsewhere. Each image is composed at most once, so
/// a change of phase costs only a lookup. Owned by the application; main thread only.
class StatusIcon
{
public:
    using Badge = std::optional<QString>;

    /// The colours for light and for dark panels. On some grey panels, no others have enough
    /// contrast, whether by themselves or by their outline.
    static constexpr QColor onLightPanel() { return {0, 0, 0}; }
    static constexpr QColor onDarkPanel() { return {255, 255, 255}; }

    /// Loads the mark "MenuBarIcon" from the bundle and the symbols from a folder, by default the
    /// one compiled in.
    explicit StatusIcon(Bundle bundle, QString symbols = QStringLiteral(":/symbols"));

    /// Returns the name of the phase's symbol; none for a node in sync, which the bare mark stands
    /// for.
    static Badge badge(Phase phase);

    /// Returns the tray image with this badge in the current colour, marked as a mask. A badge
    /// without a symbol is left out. The program ends if there is no mark to draw.
    QIcon image(const Badge &badge);

    /// Returns the compositions that the image consists of, for callers that paint them themselves,
    /// in a colour of their choice.
    const StatusImages &composed(const Badge &badge);

    /// Sets the colour of the images returned from now on; onLightPanel() by default.
    void setColor(const QColor &color);

private:
    struct Entry
    {
        std::shared_ptr<const StatusImages> images;
        QIcon icon;
    };

    const Entry &entry(const Badge &badge);
    StatusImages compose(const Badge &badge) const;
    QIcon icon(const QString &key, std::shared_ptr<const StatusImages> images) const;
    StatusImage::Drawing mark() const;
    StatusImage::Drawing symbol(const QString &name) const;

    Bundle m_bundle;
    QString m_symbols;
    QColor m_color = onLightPanel();
    /// Keyed by the badge's name, empty for none. Never cleared, because there are at most seven.
    QHash<QString, Entry> m_cache;
};

} // namespace tidewick
