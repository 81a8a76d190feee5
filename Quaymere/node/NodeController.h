// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include "node/BootstrapProgress.h"
#include "node/NodeConfig.h"
#include "node/NodeHost.h"
#include "node/NodeLog.h"
#include "node/NodeRPC.h"
#include "node/NodeStatus.h"
#include "node/NodeStore.h"
#include "node/RunLimits.h"
#include "node/RunSoFar.h"
#include "node/StorageStatus.h"
#include "platform/tasks/Task.h"

#include <QJsonObject>
#include <QObject>

#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <vector>

namespace tidewick {

/// A question to the user before something that cannot be undone. Plain texts.
struct Confirmation
{
    QString title;
    QString text;
    QString acceptLabel;
    QString rejectLabel;
};

/// Owns the node's process: configures, starts, polls, limits and stops it, and publishes how it is
/// as one NodeStatus. Lives in the main thread, where everything of it happens; failures end in the
/// phase Error with a text, never in an exception.
///
///   phase                       process  stop requested  left by
///   Stopped, Error              none     no              start(): Starting, or Error if refused
///   Starting, Bootstrapping,    running  no              an answer: any of these five but Starting
///   Connecting, Syncing, Full                            stop() or a limit: Stopping
///                                                        the process ends: Error
///   Stopping                    running  yes             the process ends: Stopped
///
/// A stop is asked for over RPC once server_info was answered, else by SIGTERM, which is sent at
/// most once in a run: a node that gets two at short distance dies without closing its store.
/// SIGKILL follows after 90 s. Destroying the controller leaves a running node to who tells it of
/// the end of this program.
class NodeController final : public QObject
{
    Q_OBJECT

public:
    /// Answers with the user's choice. It may take its time, and must not outlive the controller's
    /// owner.
    using Confirm = std::function<QCoro::Task<bool>(Confirmation)>;

    explicit NodeController(std::filesystem::path dataDirectory, NodeHost host = NodeHost(),
                            QObject *parent = nullptr);
    ~NodeController() override;

    const NodeStatus &status() const { return m_status; }
    const std::filesystem::path &dataDirectory() const { return m_data; }
    const NodeConfig &config() const { return m_config; }

    /// The "info" object of the last server_info answer in this run.
    const std::optional<QJsonObject> &lastServerInfo() const { return m_lastServerInfo; }

    /// While there is a text, start() refuses with it.
    void setStartBlocked(std::optional<QString> reason) { m_startBlocked = std::move(reason); }

    /// Without one, nothing is ever confirmed.
    void setConfirm(Confirm confirm) { m_confirm = std::move(confirm); }

    /// The application wants to quit: readyToTerminate follows the next end of the node.
    void setTerminateWhenStopped() { m_terminateWhenStopped = true; }

    /// Starts a node; nothing while there is one.
    void start();

    /// Asks the node to stop and returns. Nothing without a node, or when it was asked already.
    void stop(const std::optional<QString> &reason = std::nullopt);

    /// Stops the node and resumes when it has ended; at once when there is none. Several callers
    /// resume in the order in which they asked.
    QCoro::Task<> stopAndWait(QString reason);

    /// Asks the user, then deletes the store, stopping the node first. Nothing while a question is
    /// open.
    void clearStorage();

signals:
    /// The status is another one now, and so is everything else the controller tells. Slots may
    /// give any command, and may destroy the controller.
    void statusChanged();

    /// A node that nobody asked to stop has ended, or has been stopped at a limit, or could not be
    /// started when that was asked for, unless setStartBlocked has it wait. The phase it came to
    /// and one line that says why.
    void endedOnItsOwn(tidewick::Phase phase, const QString &why);

    /// The node has ended after setTerminateWhenStopped, all waiters being resumed.
    void readyToTerminate();

private:
    // An event changes a copy of the status and publishes it once, whole.
    void publish(const NodeStatus &next, const char *why);
    static void fail(NodeStatus &next, const QString &text);

    // A run of the process.
    std::optional<QString> reasonToRefuse() const;
    void launch(NodeStatus &next);
    void beginRun(NodeStatus &next, std::unique_ptr<ChildProcess> child);
    void exited(int status, bool signaled);
    std::optional<Advice> adviceAfter(const QString &lastWords) const;

    // Polling.
    void startPolling();
    QCoro::Task<> pollUntilCancelled(TaskToken token);
    QCoro::Task<> poll(bool withCounts, TaskToken token);
    bool wantsAnswers(const TaskToken &token) const;
    void takeCounts(NodeStatus &next, const QJsonObject &counts);
    void readProcessMemory(NodeStatus &next) const;
    void takeServerInfo(NodeStatus &next, const QJsonObject &info);
    QCoro::Task<> askForLists(TaskToken token);

    // Limits, stopping, storage.
    /// Sets the time left. The reason to stop the node now, if there is one.
    std::optional<QString> checkLimits(NodeStatus &next) const;
    QCoro::Task<> requestStop(TaskToken token);
    QCoro::Task<> killAfterTimeout(TaskToken token);
    QCoro::Task<> confirmAndClear(TaskToken token);
    void removeDatabase(NodeStatus &next) const;
    void refreshDisk(NodeStatus &next, qint64 storeSize) const;

    const std::filesystem::path m_data;
    const NodeHost m_host;
    const NodeConfig m_config;
    const NodeLog m_log;
    const NodeStore m_store;
    NodeRPC m_rpc;
    Confirm m_confirm;

    NodeStatus m_status;
    std::optional<QString> m_startBlocked;
    /// Each lives in the frame of a suspended stopAndWait.
    std::vector<OneShot<bool> *> m_stopWaiters;
    bool m_terminateWhenStopped = false;
    /// Spans runs: how long rebuilds take, how fast the store grows.
    StorageStatus m_storage;
    /// The node reports its own memory; from then on the host is not asked.
    bool m_nodeReportsMemory = false;

    // The run. The child is set exactly while a process exists.
    std::unique_ptr<ChildProcess> m_child;
    RunLimits m_limits;
    qint64 m_launchOffset = 0;
    SuspendingClock::time_point m_startedAt;
    std::optional<SuspendingClock::time_point> m_firstFullAt;
    bool m_rpcAnswered = false;
    std::optional<QJsonObject> m_lastServerInfo;
    BootstrapProgress m_bootstrap;
    RunSoFar m_soFar;
    bool m_hasCompany = false;
    bool m_stopRequested = false;
    std::optional<QString> m_stopReason;
    /// The stop requested is the controller's own, at a limit.
    bool m_stopIsAutomatic = false;
    bool m_clearAfterStop = false;

    // Destroyed first, so that no task goes on in what is left of the controller.
    TaskOwner m_pollTask;
    TaskOwner m_stopTask;
    TaskOwner m_killTask;
    TaskOwner m_clearTask;
};

} // namespace tidewick
