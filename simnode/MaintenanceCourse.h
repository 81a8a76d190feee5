// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include "simnode/Seconds.h"

#include <QJsonObject>
#include <QString>

#include <optional>

namespace tidewick::sim {

/// One stage of the storage engine's maintenance, as reported.
struct MaintenanceStage
{
    /// Finer than the phase; a scenario pins a node to a stage by this name.
    const char *name;
    const char *phase;
    /// "major" or "round": the current operation while building, otherwise the next one.
    const char *operation;
    Seconds length;
    /// How the last rebuild ended; null before the first.
    const char *outcome;

    bool isInPhase(const char *which) const;
};

/// A stage and the time spent in it.
struct MaintenanceMoment
{
    /// Stages are numbered consecutively over a run.
    int number;
    Seconds inStage;
};

/// The storage engine's maintenance over time: it waits for the node to be in sync, rewrites the
/// store once, then trims it again and again. About every six minutes, one trim fails at first and
/// the engine is blocked for a while. A value; everything follows from simulated time.
class MaintenanceCourse
{
public:
    /// A pinned stage repeats forever.
    explicit MaintenanceCourse(const std::optional<QString> &pinnedStage = std::nullopt);

    /// Whether a stage of this name exists.
    static bool knows(const QString &name);

    static const MaintenanceStage &stage(int number);

    /// The stage at that time. `full` is how long the node has been in sync.
    MaintenanceMoment at(Seconds elapsed, std::optional<Seconds> full) const;

    /// The object "mossgrid_maintenance" of get_counts.
    static QJsonObject report(const MaintenanceMoment &moment, qint64 growthBytes,
                              Seconds ledgerInterval);

private:
    std::optional<int> m_pinned;
};

} // namespace tidewick::sim
