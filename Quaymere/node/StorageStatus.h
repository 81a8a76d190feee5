// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include "platform/files/Defaults.h"
#include "platform/time/Clock.h"

#include <QJsonObject>
#include <QString>

#include <optional>

namespace tidewick {

/// Summarises the storage engine's maintenance report ("mossgrid_maintenance") in one line. Learns
/// from the reports how long each kind of rebuild took (kept in the defaults store under
/// "lastBuildSeconds.<operation>") and how fast the store grows, so keep one object from poll to
/// poll. Members that are absent or of the wrong type have defaults; nothing here fails.
class StorageStatus
{
public:
    explicit StorageStatus(Defaults defaults);

    /// The line for one report as of `now`, such as "Storage: trimming the store · copying 42% · 3m
    /// so far, about 10m left".
    QString describe(const QJsonObject &object, WallClock::time_point now);

    /// A JSON number, with true and false as 1 and 0, or a text that is a decimal number as a
    /// whole.
    static std::optional<double> number(const QJsonValue &value);

    /// The current step of a rebuild, from the JSON text in its "progress" member: "copying 42%".
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

    /// The starting point for estimating the store's growth.
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
