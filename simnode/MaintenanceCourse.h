// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include "simnode/Seconds.h"

#include <QJsonObject>
#include <QString>

#include <optional>

namespace tidewick::sim {

/// One stage of the storage engine's maintenance, as it is reported.
struct MaintenanceStage
{
    /// Finer than the phase: what a scenario pins a node to.
    const char *name;
    const char *phase;
    /// "major" or "round": what is being done while building, else what comes next.
    const char *operation;
    Seconds length;
    /// How the last rebuild ended; null before the first.
    const char *outcome;

    bool isInPhase(const char *which) const;
};

/// A stage with the time spent in it.
struct MaintenanceMoment
{
    /// Stages are numbered as they follow each other in a run.
    int number;
    Seconds inStage;
};

/// What the storage engine does over time: it waits for the node to be in sync, rewrites the store
/// once, then trims it again and again; once in six minutes a trim fails at first, and once the
/// engine is blocked for a while. A value; everything follows from simulated time.
class MaintenanceCourse
{
public:
    /// A stage that is pinned is gone through again and again.
    explicit MaintenanceCourse(const std::optional<QString> &pinnedStage = std::nullopt);

    /// Whether there is a stage of this name.
    static bool knows(const QString &name);

    static const MaintenanceStage &stage(int number);

    /// `full` is how long the node has been in sync.
    MaintenanceMoment at(Seconds elapsed, std::optional<Seconds> full) const;

    /// The report "mossgrid_maintenance".
    static QJsonObject report(const MaintenanceMoment &moment, qint64 growthBytes,
                              Seconds ledgerInterval);

private:
    std::optional<int> m_pinned;
};

} // namespace tidewick::sim
