// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QString>

namespace tidewick::ByteCount {

/// A size as file managers write it: decimal units, "12.3 MB". KB without decimals, MB with at most
/// one, larger units with at most two; trailing zeros are dropped. Rounds half away from zero and
/// switches to the next unit rather than show 1,000 of one. 0 reads "Zero KB". The same in every
/// locale.
QString text(qint64 bytes);

} // namespace tidewick::ByteCount
