// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "platform/PropertyList.h"

#include <QXmlStreamReader>

namespace tidewick::PropertyList {

namespace {

/// In bytes. Ours has some hundred. The parser's time grows with the square of some lists' size.
constexpr qsizetype largestList = 65536;
/// In characters. Ours has none.
constexpr int largestEntity = 64;

} // namespace

std::optional<QString> text(const QByteArray &xml, QStringView key)
{
    if (xml.size() > largestList)
        return std::nullopt;
    QXmlStreamReader reader(xml);
    reader.setEntityExpansionLimit(largestEntity);
    if (!reader.readNextStartElement() || reader.name() != u"plist"
        || !reader.readNextStartElement() || reader.name() != u"dict")
        return std::nullopt;
    std::optional<QString> found;
    bool isNext = false;
    while (reader.readNextStartElement()) {
        if (reader.name() == u"key") {
            isNext = reader.readElementText() == key;
        } else if (isNext && reader.name() == u"string") {
            found = reader.readElementText();
            isNext = false;
        } else {
            reader.skipCurrentElement();
            isNext = false;
        }
    }
    // What comes after a fault cannot be told, so what came before is not trusted either.
    return reader.hasError() ? std::nullopt : found;
}

} // namespace tidewick::PropertyList
