// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "Checks.h"

#include "platform/text/DisplayText.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>

namespace tidewick::Fuzzing {

namespace {

/// In user-perceived characters.
constexpr qsizetype shownCharacters = 40;
/// In UTF-16 units: DisplayText looks at sixteen for each character.
constexpr qsizetype shownUnits = shownCharacters * 16 + 1;

bool spoilsTheLine(QChar character)
{
    switch (character.category()) {
    case QChar::Other_Control:
    case QChar::Separator_Line:
    case QChar::Separator_Paragraph:
        return true;
    default:
        break;
    }
    switch (character.direction()) {
    case QChar::DirLRE:
    case QChar::DirLRO:
    case QChar::DirRLE:
    case QChar::DirRLO:
    case QChar::DirPDF:
    case QChar::DirLRI:
    case QChar::DirRLI:
    case QChar::DirFSI:
    case QChar::DirPDI:
        return true;
    default:
        return false;
    }
}

void requirePlain(const QString &shown, bool wholePairs)
{
    require(std::none_of(shown.cbegin(), shown.cend(), spoilsTheLine), "a line is plain");
    require(shown.size() <= shownUnits, "a line is short");
    require(!wholePairs || shown.isValidUtf16(), "pairs of surrogates stay together");
    require(DisplayText::singleLine(shown) == shown, "a plain line stays as it is");
    require(DisplayText::elided(shown, shownCharacters) == shown, "a short line stays as it is");
}

} // namespace

void require(bool holds, const char *what)
{
    if (holds)
        return;
    std::fprintf(stderr, "This does not hold: %s\n", what);
    std::abort();
}

QByteArray bytesOf(const std::uint8_t *data, std::size_t size)
{
    return {reinterpret_cast<const char *>(data), qsizetype(size)};
}

void requireShowable(const QString &text)
{
    using namespace DisplayText;
    const bool wholePairs = text.isValidUtf16();
    requirePlain(singleLine(elided(text, shownCharacters)), wholePairs);
    requirePlain(elided(singleLine(text), shownCharacters), wholePairs);
}

} // namespace tidewick::Fuzzing
