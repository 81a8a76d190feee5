// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "node/BuildInfo.h"

#include "platform/text/Lines.h"

namespace tidewick::BuildInfo {

std::optional<QString> value(QStringView key, const QString &buildInfo)
{
    std::optional<QString> value;
    for (const QStringView line : Lines::of(buildInfo)) {
        const QList<QStringView> pieces = line.split(u'=', Qt::SkipEmptyParts);
        if (pieces.size() == 2 && pieces[0] == key)
            value = pieces[1].toString();
    }
    return value;
}

bool hasMossgrid(const QString &buildInfo)
{
    const QString mossgrid = QStringLiteral("Mossgrid");
    return value(u"store", buildInfo).value_or(mossgrid) == mossgrid;
}

} // namespace tidewick::BuildInfo
