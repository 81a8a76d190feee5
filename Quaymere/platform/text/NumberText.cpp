// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "platform/text/NumberText.h"

#include <QByteArray>

#include <array>
#include <charconv>
#include <clocale>
#include <cmath>
#include <cstdlib>
#include <limits>

namespace tidewick::NumberText {

namespace {

bool isDigit(QChar c)
{
    return c >= u'0' && c <= u'9';
}

bool isSign(QChar c)
{
    return c == u'+' || c == u'-';
}

qsizetype digitsFrom(QStringView text, qsizetype at)
{
    const qsizetype begin = at;
    while (at < text.size() && isDigit(text[at]))
        ++at;
    return at - begin;
}

/// The length of the longest decimal number at the beginning of the text; 0 if there is none.
qsizetype realLength(QStringView text)
{
    qsizetype at = !text.isEmpty() && isSign(text[0]) ? 1 : 0;
    qsizetype digits = digitsFrom(text, at);
    at += digits;
    if (at < text.size() && text[at] == u'.') {
        const qsizetype decimals = digitsFrom(text, at + 1);
        if (digits + decimals > 0)
            at += 1 + decimals;
        digits += decimals;
    }
    if (digits == 0)
        return 0;
    if (at < text.size() && (text[at] == u'e' || text[at] == u'E')) {
        const qsizetype sign = at + 1 < text.size() && isSign(text[at + 1]) ? 1 : 0;
        if (const qsizetype exponent = digitsFrom(text, at + 1 + sign); exponent > 0)
            at += 1 + sign + exponent;
    }
    return at;
}

/// `text` must match the grammar above. Outside the range of double, the result is infinite or
/// zero, a distinction that neither std::from_chars nor Qt makes.
double convertReal(QStringView text)
{
    static const locale_t cLocale = ::newlocale(LC_ALL_MASK, "C", nullptr);
    return ::strtod_l(text.toLatin1().constData(), nullptr, cLocale);
}

/// An integer read from an optional sign and digits, clamped to the range of the type.
struct ReadInteger
{
    qint64 value;
    bool fits;
};

ReadInteger convertInteger(QStringView text)
{
    const bool negative = text[0] == u'-';
    const QByteArray digits = (isSign(text[0]) && !negative ? text.mid(1) : text).toLatin1();
    qint64 value = 0;
    const auto read = std::from_chars(digits.begin(), digits.end(), value);
    if (read.ec == std::errc::result_out_of_range) {
        using Limits = std::numeric_limits<qint64>;
        return {negative ? Limits::min() : Limits::max(), false};
    }
    return {value, true};
}

/// The length of the integer at the beginning of the text; 0 if there is none.
qsizetype integerLength(QStringView text)
{
    const qsizetype sign = !text.isEmpty() && isSign(text[0]) ? 1 : 0;
    const qsizetype digits = digitsFrom(text, sign);
    return digits == 0 ? 0 : sign + digits;
}

} // namespace

QString fixed(double value, int decimals)
{
    // The largest double has 309 digits before the point.
    std::array<char, 400> buffer{};
    const auto end =
        std::to_chars(buffer.begin(), buffer.end(), value, std::chars_format::fixed, decimals);
    return QString::fromLatin1(buffer.data(), end.ptr - buffer.data());
}

std::string shortest(double value)
{
    constexpr double exactIntegers = 9007199254740992.0;
    std::array<char, 64> buffer{};
    const bool integral = std::abs(value) < exactIntegers && std::trunc(value) == value;
    const auto end = integral
                         ? std::to_chars(buffer.begin(), buffer.end(), static_cast<qint64>(value))
                         : std::to_chars(buffer.begin(), buffer.end(), value);
    return {buffer.data(), end.ptr};
}

std::optional<qint64> integer(QStringView text)
{
    if (text.isEmpty() || integerLength(text) != text.size())
        return std::nullopt;
    const ReadInteger read = convertInteger(text);
    return read.fits ? std::optional(read.value) : std::nullopt;
}

std::optional<double> real(QStringView text)
{
    if (text.isEmpty() || realLength(text) != text.size())
        return std::nullopt;
    return convertReal(text);
}

qint64 leadingInteger(QStringView text)
{
    qsizetype blanks = 0;
    while (blanks < text.size() && text[blanks].isSpace())
        ++blanks;
    const QStringView rest = text.mid(blanks);
    const qsizetype length = integerLength(rest);
    return length == 0 ? 0 : convertInteger(rest.left(length)).value;
}

double leadingReal(QStringView text)
{
    const qsizetype length = realLength(text);
    return length == 0 ? 0 : convertReal(text.left(length));
}

qint64 truncated(double value)
{
    // 2^63 is exact as a double, and the first value too large for the type.
    constexpr double limit = 9223372036854775808.0;
    if (std::isnan(value))
        return 0;
    if (value >= limit)
        return std::numeric_limits<qint64>::max();
    if (value < -limit)
        return std::numeric_limits<qint64>::min();
    return static_cast<qint64>(value);
}

} // namespace tidewick::NumberText
