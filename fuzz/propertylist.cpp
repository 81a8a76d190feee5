// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "platform/files/PropertyList.h"

#include "Checks.h"

using namespace tidewick;
using Fuzzing::require;

namespace {

/// A list with the same text. A literal carriage return would be read as a line feed.
QByteArray listOf(const QString &text)
{
    const QString escaped = text.toHtmlEscaped().replace(u'\r', QLatin1String("&#13;"));
    return "<plist><dict><key>CFBundleShortVersionString</key><string>" + escaped.toUtf8()
           + "</string></dict></plist>";
}

} // namespace

/// Fuzzes the bundle's property list, as searched for the version.
int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const QByteArray xml = Fuzzing::bytesOf(data, size);
    const auto found = [](const QByteArray &list) {
        return PropertyList::text(list, u"CFBundleShortVersionString");
    };
    const auto text = found(xml);
    require(found(xml) == text, "the same each time");
    if (!text)
        return 0;
    require(text->isValidUtf16(), "surrogate pairs stay together");
    require(found(listOf(*text)) == text, "the result can be written and read again");
    Fuzzing::requireShowable(*text);
    return 0;
}
