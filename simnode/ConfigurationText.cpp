// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "simnode/ConfigurationText.h"

namespace tidewick::sim::ConfigurationText {

Sections sections(const QByteArray &text)
{
    Sections sections;
    QByteArrayList *current = nullptr;
    for (const QByteArray &whole : text.split('\n')) {
        const qsizetype comment = whole.indexOf('#');
        const QByteArray line = whole.first(comment < 0 ? whole.size() : comment).trimmed();
        if (line.isEmpty())
            continue;
        if (line.startsWith('[') && line.endsWith(']'))
            current = &sections[line.sliced(1, line.size() - 2)];
        else if (current != nullptr)
            current->append(line);
    }
    return sections;
}

Values values(const QByteArrayList &lines)
{
    Values values;
    for (const QByteArray &line : lines) {
        if (const qsizetype equals = line.indexOf('='); equals > 0)
            values[line.left(equals).trimmed()] = line.mid(equals + 1).trimmed();
    }
    return values;
}

} // namespace tidewick::sim::ConfigurationText
