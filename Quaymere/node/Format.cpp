// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "node/Format.h"

#include <algorithm>

namespace tidewick::Format {

QString duration(std::chrono::seconds duration)
{
    const qint64 seconds = std::max<qint64>(duration.count(), 0);
    const qint64 hours = seconds / 3600;
    const QString minutes = QString::number((seconds - hours * 3600) / 60) + u'm';
    return hours > 0 ? QString::number(hours) + QLatin1String("h ") + minutes : minutes;
}

} // namespace tidewick::Format
