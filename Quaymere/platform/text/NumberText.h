// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QString>

#include <optional>
#include <string>

// Converts numbers to text and back, the same way in every locale. Qt's formatting rounds ties away
// from zero, and its parsing accepts blanks; these functions do neither, except that
// leadingInteger() skips blanks.

namespace tidewick::NumberText {

/// Formats like C's "%.<decimals>f" in the C locale: rounds from the exact binary value, ties to
/// even.
QString fixed(double value, int decimals);

/// The shortest text that reads back as the same number. An integral number has no decimal point
/// and, below 2^53, no exponent.
std::string shortest(double value);

/// Parses the whole text as a decimal integer: an optional sign, then ASCII digits only. Nothing if
/// there is anything else or the value does not fit.
std::optional<qint64> integer(QStringView text);

/// Parses the whole text as a decimal number: an optional sign, digits with an optional point, an
/// optional exponent. No blanks, no hexadecimal, no names for infinity. Outside the range of
/// double, the result is infinite or zero.
std::optional<double> real(QStringView text);

/// The integer that a text begins with, after leading blanks; 0 if there is none. Clamped to the
/// range of the type.
qint64 leadingInteger(QStringView text);

/// The decimal number that a text begins with; 0 if there is none.
double leadingReal(QStringView text);

/// Rounds towards zero and clamps to the range of the type; 0 for NaN.
qint64 truncated(double value);

} // namespace tidewick::NumberText
