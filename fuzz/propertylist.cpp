// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "platform/files/PropertyList.h"

#include "Checks.h"

using namespace tidewick;
using Fuzzing::require;

namespace {

/// The list that says the same. A carriage return would be read as a line feed.
QByteArray listOf(const QString &text)
{
    const QString escaped = text.toHtmlEscaped().replace(u'\r', QLatin1String("&#13;"));
    return "<plist><dict><key>CFBundleShortVersionString</key><string>" + escaped.toUtf8()
           + "</string></dict></plist>";
}

} // namespace

/// The bundle's property list, as it is searched for the version.
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
    require(text->isValidUtf16(), "a text is whole");
    require(found(listOf(*text)) == text, "what was read can be written");
    Fuzzing::requireShowable(*text);
    return 0;
}
