// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "ui/controls/TabularFigures.h"

#include <QFontMetricsF>
#include <QHash>

#include <algorithm>
#include <array>

namespace tidewick::TabularFigures {

namespace {

constexpr qsizetype mostKnown = 64;

/// What each digit lacks on both sides of the widest one's advance, in pixels.
struct Digits
{
    std::array<qreal, 10> side{};
    bool isUneven = false;
};

bool isDigit(QChar character)
{
    return character >= u'0' && character <= u'9';
}

Digits measured(const QFont &font)
{
    const QFontMetricsF metrics(font);
    std::array<qreal, 10> advance{};
    for (std::size_t digit = 0; digit < advance.size(); ++digit)
        advance.at(digit) = metrics.horizontalAdvance(QString::number(digit));
    const qreal widest = *std::max_element(advance.begin(), advance.end());
    Digits digits;
    for (std::size_t digit = 0; digit < advance.size(); ++digit)
        digits.side.at(digit) = (widest - advance.at(digit)) / 2;
    digits.isUneven =
        std::any_of(digits.side.begin(), digits.side.end(), [](qreal side) { return side > 0; });
    return digits;
}

const Digits &digitsOf(const QFont &font)
{
    static QHash<QFont, Digits> known;
    if (const auto found = known.constFind(font); found != known.constEnd())
        return *found;
    if (known.size() >= mostKnown)
        known.clear();
    return *known.insert(font, measured(font));
}

/// The space on one side of a character; 0 if it is no digit.
qreal sideOf(const Digits &digits, QChar character)
{
    return isDigit(character) ? digits.side.at(std::size_t(character.unicode() - u'0')) : 0;
}

/// Whether space after this character belongs to nothing but the digit behind it. Letters may be
/// joined to others.
bool takesSpace(QChar character)
{
    return isDigit(character) || character.isSpace() || character.isPunct() || character.isSymbol();
}

QTextLayout::FormatRange unkerned(qsizetype start, qsizetype length)
{
    QTextLayout::FormatRange range{int(start), int(length), {}};
    range.format.setFontKerning(false);
    return range;
}

QTextLayout::FormatRange spaced(qsizetype place, qreal space)
{
    QTextLayout::FormatRange range = unkerned(place, 1);
    range.format.setFontLetterSpacingType(QFont::AbsoluteSpacing);
    range.format.setFontLetterSpacing(space);
    return range;
}

/// The formats for a font whose digits are equally wide already.
QList<QTextLayout::FormatRange> unkernedFigures(const QString &text)
{
    QList<QTextLayout::FormatRange> ranges;
    for (qsizetype i = 0; i < text.size(); ++i) {
        if (!isDigit(text.at(i)))
            continue;
        if (i > 0 && isDigit(text.at(i - 1)))
            ++ranges.last().length;
        else
            ranges += unkerned(i, 1);
    }
    return ranges;
}

} // namespace

QList<QTextLayout::FormatRange> formats(const QString &text, const QFont &font)
{
    const Digits &digits = digitsOf(font);
    if (!digits.isUneven)
        return unkernedFigures(text);
    QList<QTextLayout::FormatRange> ranges;
    for (qsizetype i = 0; i < text.size(); ++i) {
        const QChar next = i + 1 < text.size() ? text.at(i + 1) : QChar();
        if (!isDigit(text.at(i)) && !(isDigit(next) && takesSpace(text.at(i))))
            continue;
        // A digit behind a letter stands at the start of its cell instead.
        const bool isCentred = i == 0 || takesSpace(text.at(i - 1));
        const qreal own = sideOf(digits, text.at(i)) * (isCentred ? 1 : 2);
        ranges += spaced(i, own + sideOf(digits, next));
    }
    return ranges;
}

qreal indent(QChar first, const QFont &font)
{
    return sideOf(digitsOf(font), first);
}

} // namespace tidewick::TabularFigures
