// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include "simnode/Answers.h"
#include "simnode/DebugLog.h"
#include "simnode/Store.h"

#include <QObject>
#include <QTimer>

#include <chrono>
#include <optional>

namespace tidewick::sim {

/// The course of a run in real time: closes ledgers, writes and rebuilds the store, and records
/// events in the debug log.
class Simulation final : public QObject
{
    Q_OBJECT

public:
    /// Opens the store; throws FileError. The log must outlive the simulation.
    Simulation(const NodeConfiguration &configuration, const Scenario &scenario, DebugLog &log,
               QObject *parent = nullptr);

    /// Starts the clock.
    void start();

    /// Ends the trouble shown in server_info from now on.
    void heal() { m_answers.heal(); }

    /// Answers a command as of now.
    Reply answer(const QString &command, const QJsonObject &request) const;

    /// The messages about this run's ledgers.
    const LedgerMessages &ledgers() const { return m_answers.ledgers(); }

    /// The validated ledgers as of now, or nothing if there are none yet.
    std::optional<LedgerRange> validated() const { return m_answers.validated(now()); }

signals:
    /// The network has closed this ledger, which is now in the store.
    void ledgerClosed(quint32 index);
    /// The store can no longer be written; `text` is the reason.
    void storeFailed(const QString &text);

private:
    NodeTime now() const;
    void awaitNextLedger();
    void closeNextLedger();
    void observe();
    void observeState(Seconds elapsed);
    void observeMaintenance(const MaintenanceMoment &moment);

    Scenario m_scenario;
    bool m_maintains;
    DebugLog &m_log;
    Store m_store;
    Answers m_answers;
    std::chrono::steady_clock::time_point m_startedAt;
    quint32 m_newestLedger;
    QTimer m_ledgerTimer;
    QTimer m_observeTimer;
    /// The number of states logged, and the last stage of the maintenance.
    qsizetype m_statesNoted = 0;
    int m_maintenanceStage = -1;
};

} // namespace tidewick::sim
