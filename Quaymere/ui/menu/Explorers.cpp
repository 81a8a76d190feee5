// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "ui/menu/Explorers.h"

namespace tidewick::Explorers {

std::optional<QUrl> page(const char *base, const char *folder, const QString &name)
{
    // Browsers resolve these as relative path segments, percent-encoded or not.
    if (name.isEmpty() || name == u"." || name == u"..")
        return std::nullopt;
    const QUrl url = QUrl::fromEncoded(
        base + QByteArray(folder) + '/' + QUrl::toPercentEncoding(name), QUrl::StrictMode);
    return url.isValid() ? std::optional(url) : std::nullopt;
}

} // namespace tidewick::Explorers
