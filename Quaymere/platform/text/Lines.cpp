// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "platform/text/Lines.h"

#include <algorithm>

namespace tidewick::Lines {

namespace {

/// CR LF yields an empty line in between, which is dropped anyway.
bool isLineEnd(QChar c)
{
    return (c >= u'\n' && c <= u'\r') || c == QChar(0x85) || c == QChar(0x2028)
           || c == QChar(0x2029);
}

} // namespace

QList<QStringView> of(QStringView text)
{
    QList<QStringView> lines;
    for (const auto *at = text.begin(); at != text.end();) {
        const auto *end = std::find_if(at, text.end(), isLineEnd);
        if (end != at)
            lines.append(QStringView(at, end));
        at = end == text.end() ? end : end + 1;
    }
    return lines;
}

} // namespace tidewick::Lines
