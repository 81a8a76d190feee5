// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QByteArray>
#include <QString>

#include <optional>

namespace tidewick::Utf8 {

/// Decodes bytes that are valid UTF-8 throughout; nothing for any others. A byte order mark is
/// kept.
std::optional<QString> decode(const QByteArray &bytes);

/// Decodes text that may be damaged: each longest piece that could have begun a character becomes
/// one U+FFFD, as Unicode recommends. A byte order mark is kept. (QString::fromUtf8 writes one
/// U+FFFD per byte and drops the mark.)
QString decodeLossy(const QByteArray &bytes);

} // namespace tidewick::Utf8
