// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include "simnode/Course.h"
#include "simnode/LedgerMessages.h"
#include "simnode/MaintenanceCourse.h"
#include "simnode/NodeConfiguration.h"
#include "simnode/Scenario.h"
#include "simnode/ValidatorLists.h"

#include <QJsonArray>
#include <QJsonObject>

#include <optional>

namespace tidewick::sim {

/// The values that change from one answer to the next.
struct NodeTime
{
    /// Simulated time since the ports were opened.
    Seconds elapsed;
    WallTime now;
    quint32 newestLedger;
    qint64 storeBytes;
};

/// Answers commands. The answers depend on the configuration, the scenario and the time alone,
/// except that the memory reported is that of this process at this moment.
class Answers
{
public:
    Answers(NodeConfiguration configuration, Scenario scenario, LedgerSchedule schedule);

    /// Ends the node's trouble from now on.
    void heal();

    const Course &course() const { return m_course; }
    const MaintenanceCourse &maintenance() const { return m_maintenance; }
    const LedgerMessages &ledgers() const { return m_ledgers; }

    /// The validated ledgers at that time, or nothing if there are none yet.
    std::optional<LedgerRange> validated(const NodeTime &time) const;

    /// Answers server_info, get_counts, validator_list_sites, validators, stop, ledger and ping.
    /// Stopping is left to the caller.
    Reply answer(const QString &command, const QJsonObject &request, const NodeTime &time) const;

private:
    Course makeCourse() const;
    QJsonObject serverInfo(const NodeTime &time) const;
    QJsonObject ledgerSummary(const NodeTime &time) const;
    QJsonArray warnings() const;
    WallTime begin() const;
    QJsonObject counts(const NodeTime &time) const;

    NodeConfiguration m_configuration;
    Scenario m_scenario;
    Course m_course;
    MaintenanceCourse m_maintenance;
    LedgerMessages m_ledgers;
    ValidatorLists m_lists;
};

/// A duration in the format of get_counts: "1 minute, 2 seconds". Empty for zero.
QString uptimeText(std::chrono::seconds uptime);

} // namespace tidewick::sim
