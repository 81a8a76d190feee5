// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "simnode/Simulation.h"

#include <algorithm>

namespace tidewick::sim {

namespace {

using namespace std::chrono_literals;

constexpr std::chrono::milliseconds observeInterval = 100ms;

LedgerSchedule scheduleOf(const Scenario &scenario, const Store &store)
{
    return {std::chrono::system_clock::now(), scenario.realLedgerInterval(), store.newestLedger()};
}

} // namespace

Simulation::Simulation(const NodeConfiguration &configuration, const Scenario &scenario,
                       DebugLog &log, QObject *parent)
    : QObject(parent), m_scenario(scenario), m_maintains(!configuration.isStock()), m_log(log),
      m_store(configuration.storePath),
      m_answers(configuration, scenario, scheduleOf(scenario, m_store)),
      m_newestLedger(m_answers.ledgers().schedule().firstIndex())
{
    m_ledgerTimer.setSingleShot(true);
    m_ledgerTimer.setTimerType(Qt::PreciseTimer);
    connect(&m_ledgerTimer, &QTimer::timeout, this, &Simulation::closeNextLedger);
    connect(&m_observeTimer, &QTimer::timeout, this, &Simulation::observe);
}

void Simulation::start()
{
    m_startedAt = std::chrono::steady_clock::now();
    observe();
    m_observeTimer.start(observeInterval);
    awaitNextLedger();
}

NodeTime Simulation::now() const
{
    const Seconds real = std::chrono::steady_clock::now() - m_startedAt;
    return {real * m_scenario.speed, std::chrono::system_clock::now(), m_newestLedger,
            m_store.bytes()};
}

Reply Simulation::answer(const QString &command, const QJsonObject &request) const
{
    return m_answers.answer(command, request, now());
}

void Simulation::awaitNextLedger()
{
    const auto due = ledgers().schedule().closeOf(m_newestLedger + 1);
    const auto left =
        std::chrono::ceil<std::chrono::milliseconds>(due - std::chrono::system_clock::now());
    m_ledgerTimer.start(std::max(left, 0ms));
}

/// Closes one ledger at a time even if several are due, so that clients are served in between.
void Simulation::closeNextLedger()
{
    ++m_newestLedger;
    try {
        m_store.append(m_newestLedger);
    } catch (const FileError &error) {
        emit storeFailed(QString::fromUtf8(error.what()));
        return;
    }
    emit ledgerClosed(m_newestLedger);
    awaitNextLedger();
}

/// Handles everything that has happened since the last call; in a fast run, this may be several
/// steps.
void Simulation::observe()
{
    const NodeTime time = now();
    observeState(time.elapsed);
    if (!m_maintains)
        return;
    try {
        const Moment moment = m_answers.course().at(time.elapsed);
        observeMaintenance(m_answers.maintenance().at(time.elapsed, moment.full));
    } catch (const FileError &error) {
        emit storeFailed(QString::fromUtf8(error.what()));
    }
}

void Simulation::observeState(Seconds elapsed)
{
    const QStringList states = m_answers.course().statesUntil(elapsed);
    for (; m_statesNoted < states.size(); ++m_statesNoted)
        m_log.info("NetworkOPs", QLatin1String("STATE->") + states[m_statesNoted]);
}

/// Stages before the first one observed, which may be pinned, are taken never to have happened.
void Simulation::observeMaintenance(const MaintenanceMoment &moment)
{
    if (m_maintenanceStage < 0)
        m_maintenanceStage = moment.number - 1;
    for (; m_maintenanceStage < moment.number; ++m_maintenanceStage) {
        const MaintenanceStage &stage = MaintenanceCourse::stage(m_maintenanceStage + 1);
        m_log.info("Mossgrid", QStringLiteral("maintenance: %1").arg(QLatin1String(stage.name)));
        if (stage.isInPhase("building"))
            m_store.beginCopy();
        else if (stage.isInPhase("switched"))
            m_store.switchToCopy();
        else if (stage.isInPhase("idle"))
            m_store.tidy();
    }
}

} // namespace tidewick::sim
