// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "simnode/DateText.h"

#include <QDateTime>
#include <QLocale>
#include <QTimeZone>

namespace tidewick::sim::DateText {

namespace {

/// The seconds from 1970-01-01 to 2000-01-01.
constexpr qint64 secondsBefore2000 = 946'684'800;

std::chrono::seconds wholeSeconds(WallTime time)
{
    return std::chrono::floor<std::chrono::seconds>(time.time_since_epoch());
}

QString formatted(WallTime time, const QString &format)
{
    const QDateTime date =
        QDateTime::fromSecsSinceEpoch(wholeSeconds(time).count(), QTimeZone::utc());
    return QLocale::c().toString(date, format);
}

} // namespace

QString human(WallTime time, int decimals)
{
    const std::chrono::nanoseconds fraction = time.time_since_epoch() - wholeSeconds(time);
    const QString digits = QStringLiteral("%1").arg(fraction.count(), 9, 10, QLatin1Char('0'));
    return formatted(time, QStringLiteral("yyyy-MMM-dd HH:mm:ss")) + u'.' + digits.left(decimals)
           + QLatin1String(" UTC");
}

QString iso(WallTime time)
{
    return formatted(time, QStringLiteral("yyyy-MM-dd'T'HH:mm:ss'Z'"));
}

qint64 ledgerTime(WallTime time)
{
    return wholeSeconds(time).count() - secondsBefore2000;
}

} // namespace tidewick::sim::DateText
