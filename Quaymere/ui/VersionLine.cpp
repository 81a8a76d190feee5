// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "ui/VersionLine.h"

#include "platform/Lines.h"

namespace tidewick {

namespace {

/// Only lines that are a key and a value count; of two with the same key the last one.
std::optional<QString> valueOf(QStringView key, const QString &buildInfo)
{
    std::optional<QString> value;
    for (const QStringView line : Lines::of(buildInfo)) {
        const QList<QStringView> pieces = line.split(u'=', Qt::SkipEmptyParts);
        if (pieces.size() == 2 && pieces[0] == key)
            value = pieces[1].toString();
    }
    return value;
}

} // namespace

QString versionLine(const std::optional<QString> &applicationVersion, const QString &buildInfo)
{
    const QString line = QLatin1String("Version ")
                         + applicationVersion.value_or(QStringLiteral("development build"));
    auto node = valueOf(u"xrpld_version", buildInfo);
    if (!node)
        node = valueOf(u"xrpld_path", buildInfo);
    return node ? line + QStringLiteral(" · node ") + *node : line;
}

} // namespace tidewick
