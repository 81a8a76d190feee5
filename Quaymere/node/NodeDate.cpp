// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "node/NodeDate.h"

#include <QDateTime>
#include <QLocale>
#include <QTimeZone>

namespace tidewick::NodeDate {

namespace {

QDateTime local(WallClock::time_point date)
{
    const auto seconds = std::chrono::floor<std::chrono::seconds>(date.time_since_epoch());
    return QDateTime::fromSecsSinceEpoch(seconds.count());
}

} // namespace

std::optional<WallClock::time_point> parse(const QString &text)
{
    constexpr qsizetype lengthToSeconds = 20;
    // The C locale, because the node's month names are English everywhere.
    const QDateTime date =
        QLocale::c().toDateTime(text.left(lengthToSeconds), QStringLiteral("yyyy-MMM-dd HH:mm:ss"));
    // Later dates are beyond the clock's range and are as good as never.
    constexpr int lastYear = 2200;
    if (!date.isValid() || date.date().year() > lastYear || !text.endsWith(QLatin1String(" UTC")))
        return std::nullopt;
    const QDateTime utc(date.date(), date.time(), QTimeZone::utc());
    return WallClock::time_point(std::chrono::seconds(utc.toSecsSinceEpoch()));
}

QString day(WallClock::time_point date, WallClock::time_point now)
{
    const QDate there = local(date).date();
    const bool thisYear = there.year() == local(now).date().year();
    return QLocale::c().toString(there, thisYear ? QStringLiteral("d MMMM")
                                                 : QStringLiteral("d MMMM yyyy"));
}

} // namespace tidewick::NodeDate
