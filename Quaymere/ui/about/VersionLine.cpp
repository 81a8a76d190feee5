// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "ui/about/VersionLine.h"

#include "node/BuildInfo.h"

namespace tidewick {

QString versionLine(const std::optional<QString> &applicationVersion, const QString &buildInfo)
{
    const QString line = QLatin1String("Version ")
                         + applicationVersion.value_or(QStringLiteral("development build"));
    auto node = BuildInfo::value(u"xrpld_version", buildInfo);
    if (!node)
        node = BuildInfo::value(u"xrpld_path", buildInfo);
    return node ? line + QStringLiteral(" · node ") + *node : line;
}

} // namespace tidewick
