// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "node/EnvironmentFile.h"

#include "platform/text/Lines.h"

#include <algorithm>

namespace tidewick::EnvironmentFile {

namespace {

/// Blanks within a line: tab, the space separators and the zero-width space.
bool isBlank(QChar c)
{
    return c == u'\t' || c.category() == QChar::Separator_Space || c == QChar(0x200B);
}

QStringView trimmed(QStringView line)
{
    const auto *begin = std::find_if_not(line.begin(), line.end(), isBlank);
    const auto *end = line.end();
    while (end > begin && isBlank(end[-1]))
        --end;
    return {begin, end};
}

void applyLine(ProcessEnvironment &environment, QStringView line)
{
    line = trimmed(line);
    const qsizetype equals = line.indexOf(u'=');
    // A process receives texts that end at a NUL, so it would receive only part of such a line.
    if (line.startsWith(u'#') || equals < 0 || line.contains(QChar::Null))
        return;
    environment[line.left(equals).toUtf8().toStdString()] =
        line.mid(equals + 1).toUtf8().toStdString();
}

} // namespace

void layOver(ProcessEnvironment &environment, QStringView text)
{
    for (const QStringView line : Lines::of(text))
        applyLine(environment, line);
}

} // namespace tidewick::EnvironmentFile
