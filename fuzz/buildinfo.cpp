// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "Checks.h"
#include "platform/text/Utf8.h"
#include "ui/about/VersionLine.h"

using namespace tidewick;
using Fuzzing::require;

namespace {

const QString separator = QStringLiteral(" · node ");

/// Lines that say nothing about the node's version.
const QString nothingTold =
    QStringLiteral("\nstore=NuDB\nxrpld_version\nxrpld_version=\nxrpld_version=a=b\n");

QString lineOf(const QString &buildInfo)
{
    return versionLine(QStringLiteral("1.0"), buildInfo);
}

} // namespace

/// Fuzzes the bundle's description of its build, as read by the window that shows the versions.
int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const auto text = Utf8::decode(Fuzzing::bytesOf(data, size));
    if (!text)
        return 0;
    const QString own = QStringLiteral("Version 1.0");
    const QString line = lineOf(*text);
    require(line == own || line.startsWith(own + separator), "the application's version is first");
    const QString node = line.mid(own.size() + separator.size());
    require(text->contains(node), "nothing is made up");
    require(!node.contains(u'='), "a version is one value");
    if (line != own)
        require(lineOf(QStringLiteral("xrpld_version=") + node) == line, "a version is its text");
    require(lineOf(*text + nothingTold) == line, "lines without a version change nothing");
    require(lineOf(*text + QStringLiteral("\nxrpld_version=2.3.0"))
                == own + separator + QStringLiteral("2.3.0"),
            "the last line wins");
    require(versionLine(*text, {}) == QLatin1String("Version ") + *text,
            "a version is shown in full");
    Fuzzing::requireShowable(line);
    return 0;
}
