// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "ui/icon/StatusIcon.h"

#include "ui/icon/StatusIconEngine.h"

#include <QFile>
#include <QSvgRenderer>

namespace tidewick {

namespace {

/// Returns the name by which an icon theme may provide the image with a badge. The names are ours;
/// empty for other badges.
QString themeName(const QString &badge)
{
    static const QHash<QString, QString> names{
        {QString(), QStringLiteral("tidewick-symbolic")},
        {QStringLiteral("pause.fill"), QStringLiteral("tidewick-paused-symbolic")},
        {QStringLiteral("ellipsis"), QStringLiteral("tidewick-waiting-symbolic")},
        {QStringLiteral("arrow.down"), QStringLiteral("tidewick-downloading-symbolic")},
        {QStringLiteral("arrow.triangle.2.circlepath"),
         QStringLiteral("tidewick-syncing-symbolic")},
        {QStringLiteral("stop.fill"), QStringLiteral("tidewick-stopping-symbolic")},
        {QStringLiteral("exclamationmark.triangle.fill"),
         QStringLiteral("tidewick-error-symbolic")},
    };
    return names.value(badge);
}

/// Returns null if the file contains no drawing.
StatusImage::Drawing drawing(QFile &&file)
{
    if (!file.open(QIODevice::ReadOnly))
        return nullptr;
    auto drawing = std::make_shared<QSvgRenderer>(file.readAll());
    return drawing->isValid() && !drawing->viewBoxF().isEmpty() ? drawing : nullptr;
}

} // namespace

StatusIcon::StatusIcon(Bundle bundle, QString symbols)
    : m_bundle(std::move(bundle)), m_symbols(std::move(symbols))
{
}

StatusIcon::Badge StatusIcon::badge(Phase phase)
{
    switch (phase) {
    case Phase::Stopped:
        return QStringLiteral("pause.fill");
    case Phase::Starting:
    case Phase::Connecting:
        return QStringLiteral("ellipsis");
    case Phase::Bootstrapping:
        return QStringLiteral("arrow.down");
    case Phase::Syncing:
        return QStringLiteral("arrow.triangle.2.circlepath");
    case Phase::Full:
        return std::nullopt;
    case Phase::Stopping:
        return QStringLiteral("stop.fill");
    case Phase::Error:
        return QStringLiteral("exclamationmark.triangle.fill");
    }
    Q_UNREACHABLE();
}

QIcon StatusIcon::image(const Badge &badge)
{
    return entry(badge).icon;
}

const StatusImages &StatusIcon::composed(const Badge &badge)
{
    return *entry(badge).images;
}

void StatusIcon::setColor(const QColor &color)
{
    if (color == m_color)
        return;
    m_color = color;
    for (auto entry = m_cache.begin(); entry != m_cache.end(); ++entry)
        entry->icon = icon(entry.key(), entry->images);
}

const StatusIcon::Entry &StatusIcon::entry(const Badge &badge)
{
    const QString key = badge.value_or(QString());
    auto found = m_cache.find(key);
    if (found == m_cache.end()) {
        auto images = std::make_shared<const StatusImages>(compose(badge));
        found = m_cache.insert(key, {images, icon(key, images)});
    }
    return *found;
}

StatusImages StatusIcon::compose(const Badge &badge) const
{
    const StatusImage::Drawing plain = mark();
    if (!badge)
        return {StatusImage(plain, nullptr), SquareStatusImage(plain, {})};
    const StatusImage::Drawing beside = symbol(*badge);
    const auto within = [&](const QString &grid) {
        const StatusImage::Drawing drawn = symbol(grid + u'/' + *badge);
        return drawn ? drawn : beside;
    };
    return {StatusImage(plain, beside),
            SquareStatusImage(
                plain, {within(QStringLiteral("sevenths")), within(QStringLiteral("ninths"))})};
}

QIcon StatusIcon::icon(const QString &key, std::shared_ptr<const StatusImages> images) const
{
    QIcon icon(new StatusIconEngine(std::move(images), m_color, themeName(key)));
    icon.setIsMask(true);
    return icon;
}

StatusImage::Drawing StatusIcon::mark() const
{
    StatusImage::Drawing mark;
    if (const auto path = m_bundle.resource("MenuBarIcon", "svg"))
        mark = drawing(QFile(*path));
    if (!mark)
        mark = symbol(QStringLiteral("circle.grid.cross"));
    if (!mark)
        qFatal("No mark for the status icon: neither MenuBarIcon.svg in %s nor circle.grid.cross",
               m_bundle.path().c_str());
    return mark;
}

StatusImage::Drawing StatusIcon::symbol(const QString &name) const
{
    return drawing(QFile(m_symbols + u'/' + name + QStringLiteral(".svg")));
}

} // namespace tidewick
