// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "platform/files/PropertyList.h"

#include <QXmlStreamReader>

namespace tidewick::PropertyList {

std::optional<QString> text(const QByteArray &xml, QStringView key)
{
    QXmlStreamReader reader(xml);
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
