// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "node/Format.h"
#include "node/NodeController.h"
#include "platform/text/ByteCount.h"
#include "platform/text/NumberText.h"

namespace tidewick {

std::optional<QString> NodeController::checkLimits(NodeStatus &next) const
{
    const SuspendingClock::time_point now = m_host.clock->suspendingNow();
    const auto deadline = m_limits.deadline(m_startedAt, m_firstFullAt);
    if (deadline && now >= *deadline)
        return QStringLiteral("Stopped automatically after its time limit");
    next.timeLeft.reset();
    if (deadline)
        next.timeLeft = Format::duration(std::chrono::floor<std::chrono::seconds>(*deadline - now));

    const std::optional<double> free = m_host.freeGB(m_data);
    if (free && *free < m_limits.diskGuardGB)
        return QStringLiteral("Stopped: only %1 GB free").arg(NumberText::fixed(*free, 1));
    return std::nullopt;
}

void NodeController::stop(const std::optional<QString> &reason)
{
    if (!m_child || m_stopRequested)
        return;
    m_stopRequested = true;
    m_stopReason = reason;

    NodeStatus next = m_status;
    next.phase = Phase::Stopping;
    next.detail = reason.value_or(QStringLiteral("Stopping"));
    next.timeLeft.reset();
    next.advice.reset();
    requestStop(m_stopTask.renew());
    killAfterTimeout(m_killTask.renew());
    publish(next, "stop requested");
}

QCoro::Task<> NodeController::requestStop(TaskToken token)
{
    if (m_rpcAnswered) {
        const auto answer = co_await m_rpc.call(QStringLiteral("stop"));
        if (answer || token.cancelled())
            co_return;
    }
    m_child->terminate();
}

QCoro::Task<> NodeController::killAfterTimeout(TaskToken token)
{
    co_await sleepUntil(m_host.clock, m_host.clock->continuousNow() + killAfter, token);
    if (token.cancelled())
        co_return;
    m_log.note(QStringLiteral("stop timed out after %1 s; sending SIGKILL").arg(killAfter.count()),
               m_host.clock->wallNow());
    m_child->kill();
}

QCoro::Task<> NodeController::stopAndWait(QString reason)
{
    if (!m_child)
        co_return;
    OneShot<bool> stopped;
    m_stopWaiters.push_back(&stopped);
    stop(reason);
    co_await stopped;
}

void NodeController::clearStorage()
{
    if (m_confirm && !m_clearTask.active())
        confirmAndClear(m_clearTask.renew());
}

QCoro::Task<> NodeController::confirmAndClear(TaskToken token)
{
    Confirmation question;
    question.title = QStringLiteral("Clear Storage?");
    question.text = QStringLiteral("This deletes %1 at").arg(ByteCount::text(m_store.size()));
    question.path = Files::display(m_store.path());
    question.consequence =
        QStringLiteral("The next Start downloads the ledger from the network again.");
    question.acceptLabel = QStringLiteral("Delete");
    question.rejectLabel = QStringLiteral("Cancel");
    // A copy, which keeps the callback's captures alive until it has answered.
    const Confirm confirm = m_confirm;
    const bool confirmed = co_await confirm(std::move(question));
    if (token.cancelled())
        co_return;
    m_clearTask.cancel(); // the question is no longer open
    if (!confirmed)
        co_return;

    if (m_child) {
        m_clearAfterStop = true;
        stop(QStringLiteral("Stopped to clear storage"));
    } else {
        NodeStatus next = m_status;
        removeDatabase(next);
        refreshDisk(next, m_store.dataSize());
        publish(next, "clear storage");
    }
}

void NodeController::removeDatabase(NodeStatus &next) const
{
    if (const std::error_code error = m_store.remove()) {
        fail(next,
             QStringLiteral("Could not clear storage: %1: %2")
                 .arg(Files::display(m_store.path()), QString::fromStdString(error.message())));
    } else if (next.phase != Phase::Error) {
        next.detail = QStringLiteral("Storage cleared");
    }
}

void NodeController::refreshDisk(NodeStatus &next, qint64 storeSize) const
{
    next.storeSize = ByteCount::text(storeSize);
    const std::optional<double> free = m_host.freeGB(m_data);
    next.freeSpace =
        free ? NumberText::fixed(*free, 1) + QLatin1String(" GB free") : NodeStatus::unknown();
}

} // namespace tidewick
