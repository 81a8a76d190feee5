// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "node/NodeController.h"
#include "node/ServerInfo.h"
#include "platform/json/JsonRead.h"
#include "platform/process/ProcessMemory.h"
#include "platform/tasks/Background.h"

namespace tidewick {

namespace {

using namespace std::chrono_literals;

constexpr std::chrono::seconds pollInterval = 2s;
/// Every this many polls, starting with the first, counts are requested and limits are checked.
constexpr int pollsPerCounts = 5;

} // namespace

void NodeController::startPolling()
{
    pollUntilCancelled(m_pollTask.renew());
}

QCoro::Task<> NodeController::pollUntilCancelled(TaskToken token)
{
    for (int cycle = 0; !token.cancelled(); cycle = (cycle + 1) % pollsPerCounts) {
        co_await poll(cycle == 0, token);
        if (token.cancelled())
            co_return;
        co_await sleepUntil(m_host.clock, m_host.clock->continuousNow() + pollInterval, token);
    }
}

/// Answers count only in the run that requested them; the token distinguishes it from a later one.
bool NodeController::wantsAnswers(const TaskToken &token) const
{
    return !token.cancelled() && m_child && !m_stopRequested;
}

QCoro::Task<> NodeController::poll(bool withCounts, TaskToken token)
{
    if (!wantsAnswers(token))
        co_return;
    const auto answer = co_await m_rpc.call(QStringLiteral("server_info"));
    std::optional<QJsonObject> counts;
    if (withCounts && wantsAnswers(token))
        counts = co_await m_rpc.call(QStringLiteral("get_counts"));
    // Measuring a store with many files, or on a slow disk, takes a while.
    std::optional<qint64> storeSize;
    if (withCounts && wantsAnswers(token)) {
        // Named, because GCC 12 destroys a temporary in an awaited call twice.
        const std::function<qint64()> walk = [store = m_store] { return store.dataSize(); };
        storeSize = co_await inBackground(walk, token);
    }
    if (!wantsAnswers(token))
        co_return;

    if (withCounts) {
        m_hasCompany = m_host.hasCompany();
        if (m_soFar.lacksLists()) {
            co_await askForLists(token);
            if (!wantsAnswers(token))
                co_return;
        }
    }

    NodeStatus next = m_status;
    if (counts)
        takeCounts(next, *counts);
    if (!m_nodeReportsMemory && !m_host.sandboxed)
        readProcessMemory(next);
    if (answer) {
        if (const auto info = JsonRead::object((*answer)[u"info"]))
            takeServerInfo(next, *info);
    }
    next.advice =
        adviceOn(m_soFar.at(m_host.clock->suspendingNow(), m_host.clock->wallNow(), m_hasCompany));
    std::optional<QString> reasonToStop;
    if (withCounts) {
        reasonToStop = checkLimits(next);
        refreshDisk(next, *storeSize);
    }
    publish(next, "answers");
    if (token.cancelled())
        co_return;
    if (reasonToStop && wantsAnswers(token)) {
        m_stopIsAutomatic = true;
        stop(reasonToStop);
    }
}

/// Called only while there is no valid list: otherwise it does not matter which publisher's site
/// fails.
QCoro::Task<> NodeController::askForLists(TaskToken token)
{
    const auto sites = co_await m_rpc.call(QStringLiteral("validator_list_sites"));
    if (sites && wantsAnswers(token))
        m_soFar.takeListSites(*sites);
}

void NodeController::takeCounts(NodeStatus &next, const QJsonObject &counts)
{
    m_bootstrap.update(counts, m_host.clock->suspendingNow());
    next.storage.reset();
    if (const auto maintenance = JsonRead::object(counts[u"mossgrid_maintenance"]))
        next.storage = m_storage.describe(*maintenance, m_host.clock->wallNow());
    if (const auto memory = ServerInfo::reportedMemory(counts)) {
        m_nodeReportsMemory = true;
        next.memory = *memory;
    }
}

void NodeController::readProcessMemory(NodeStatus &next) const
{
    if (const auto memory = ProcessMemory::of(m_child->id()))
        next.memory = ServerInfo::memoryText(memory->footprint, memory->peakFootprint);
}

void NodeController::takeServerInfo(NodeStatus &next, const QJsonObject &info)
{
    m_rpcAnswered = true;
    m_lastServerInfo = info;
    next.hasServerInfo = true;
    ServerInfo::update(next, info, m_bootstrap);
    const SuspendingClock::time_point now = m_host.clock->suspendingNow();
    m_soFar.take(info, next.phase, now);
    if (next.phase == Phase::Full && !m_firstFullAt)
        m_firstFullAt = now;
}

} // namespace tidewick
