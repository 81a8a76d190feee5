// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include "node/NodeStatus.h"
#include "platform/files/Bundle.h"
#include "ui/icon/StatusImage.h"

#include <QHash>
#include <QIcon>

namespace tidewick {

/// The images of the tray: the application's mark, and beside it a badge that tells the phase at a
/// glance. Each is composed at most once, so that a change of phase costs one look-up. Owned by the
/// application; main thread only.
class StatusIcon
{
public:
    using Badge = std::optional<QString>;

    /// The colours of text on light and on dark panels.
    static constexpr QColor onLightPanel() { return {28, 29, 33}; }
    static constexpr QColor onDarkPanel() { return {236, 232, 225}; }

    /// Takes the mark "MenuBarIcon" from the bundle and symbols from a folder, by default the one
    /// compiled in.
    explicit StatusIcon(Bundle bundle, QString symbols = QStringLiteral(":/symbols"));

    /// The name of the phase's symbol; none for a node in sync, which the bare mark stands for.
    static Badge badge(Phase phase);

    /// The image with that badge for a tray, a mask in the present colour. A badge that there is no
    /// symbol for is left away; without any mark to draw the program ends.
    QIcon image(const Badge &badge);

    /// The same image for whoever paints it at its own size and in a colour of its own.
    const StatusImage &composed(const Badge &badge);

    /// The colour of the images asked for from now on; that of text on light panels at first.
    void setColor(const QColor &color);

private:
    struct Entry
    {
        std::shared_ptr<const StatusImage> image;
        QIcon icon;
    };

    const Entry &entry(const Badge &badge);
    QIcon icon(const QString &key, std::shared_ptr<const StatusImage> image) const;
    StatusImage::Drawing mark() const;
    StatusImage::Drawing symbol(const QString &name) const;

    Bundle m_bundle;
    QString m_symbols;
    QColor m_color = onLightPanel();
    /// By the badge's name, empty for none. Never emptied: there are seven at most.
    QHash<QString, Entry> m_cache;
};

} // namespace tidewick
