// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include "platform/files/Defaults.h"
#include "platform/time/Clock.h"

#include <QJsonObject>
#include <QString>

#include <optional>

namespace tidewick {

/// Puts the storage engine's report of its maintenance ("mossgrid_maintenance") into one line, and
/// learns from what it is shown: how long each kind of rebuild took (kept in the defaults store
/// under "lastBuildSeconds.<operation>"), and how fast the store grows. Keep one value from poll to
/// poll. Members that are absent or of the wrong type have defaults; nothing here fails.
class StorageStatus
{
public:
    explicit StorageStatus(Defaults defaults);

    /// The line for one report as of `now`, such as "Storage: trimming the store · copying 42% · 3m
    /// so far, about 10m left".
    QString describe(const QJsonObject &object, WallClock::time_point now);

    /// A JSON number, true and false as 1 and 0, or a text that is a decimal number as a whole.
    static std::optional<double> number(const QJsonValue &value);

    /// The step a rebuild is at, from the JSON text in its "progress" member: "copying 42%".
    static std::optional<QString> step(const std::optional<QString> &progress);

    /// "under a minute", else hours and minutes.
    static QString span(double seconds);

private:
    /// A rebuild in progress, as last reported.
    struct Building
    {
        QString operation;
        double seconds;
    };

    /// Where the estimate of the store's growth begins.
    struct GrowthSample
    {
        double bytes;
        WallClock::time_point at;
    };

    QString describeBuilding(const QJsonObject &object);
    void settleBuilding(const QJsonObject &object);
    QString describeIdle(const QJsonObject &object, const QJsonObject &next,
                         WallClock::time_point now);
    QString describeNextTrim(const QJsonObject &next, WallClock::time_point now);

    Defaults m_defaults;
    std::optional<Building> m_building;
    std::optional<GrowthSample> m_growthFrom;
};

} // namespace tidewick
