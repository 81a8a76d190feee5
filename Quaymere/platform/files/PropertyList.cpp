// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "platform/files/PropertyList.h"

#include <QXmlStreamReader>

namespace tidewick::PropertyList {

namespace {

/// In bytes. Ours has some hundred. The parser's time grows with the square of some lists' size.
constexpr qsizetype largestList = 65536;

/// Goes to the outermost element, if there is one. Entities can stand for texts out of all
/// proportion, and no property list needs them: where some are declared, nothing is looked for.
bool goToRoot(QXmlStreamReader &reader)
{
    while (!reader.atEnd() && !reader.isStartElement()) {
        reader.readNext();
        if (!reader.entityDeclarations().isEmpty())
            return false;
    }
    return reader.isStartElement();
}

} // namespace

std::optional<QString> text(const QByteArray &xml, QStringView key)
{
    if (xml.size() > largestList)
        return std::nullopt;
    QXmlStreamReader reader(xml);
    if (!goToRoot(reader) || reader.name() != u"plist" || !reader.readNextStartElement()
        || reader.name() != u"dict")
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
