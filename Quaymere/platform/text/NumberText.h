// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QString>

#include <optional>
#include <string>

// Numbers to text and back, the same in every locale. Qt's own formatting rounds ties away from
// zero and its parsing takes blanks; these do neither.

namespace tidewick::NumberText {

/// As C's "%.<decimals>f" in the C locale: rounded from the exact binary value, ties to even.
QString fixed(double value, int decimals);

/// The shortest text that reads back as the same number; an integral one has no point and, below
/// 2^53, no exponent.
std::string shortest(double value);

/// The whole text as a decimal integer: an optional sign, then ASCII digits only. Nothing when
/// there is anything else or the value does not fit.
std::optional<qint64> integer(QStringView text);

/// The whole text as a decimal number: an optional sign, digits with an optional point, an optional
/// exponent. No blanks, no hexadecimal, no names for infinity. Beyond the range of double it is
/// infinite or zero.
std::optional<double> real(QStringView text);

/// The integer a text begins with, after leading blanks; 0 when it begins with none. Held to the
/// limits of the type.
qint64 leadingInteger(QStringView text);

/// The decimal number a text begins with; 0 when it begins with none.
double leadingReal(QStringView text);

/// Towards zero, held to the limits of the type; 0 for not-a-number.
qint64 truncated(double value);

} // namespace tidewick::NumberText
