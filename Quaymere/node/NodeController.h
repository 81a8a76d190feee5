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

/// A question to ask the user before something that cannot be undone. Plain texts.
struct Confirmation
{
    QString title;
    /// What will be done to the folder or file below.
    QString text;
    QString path;
    QString consequence;
    QString acceptLabel;
    QString rejectLabel;
};

/// Owns the node's process: configures, starts, polls, limits and stops it, and publishes its state
/// as one NodeStatus. Lives in the main thread; only polls measure the store in another one. A
/// failure leads to the phase Error with a text, never to an exception.
///
///   phase                       process  stop requested  left by
///   Stopped, Error              none     no              start(): Starting, or Error if refused
///   Starting, Bootstrapping,    running  no              an answer: any of these except Starting
///   Connecting, Syncing, Full                            stop() or a limit: Stopping
///                                                        the process ends: Error
///   Stopping                    running  yes             the process ends: Stopped
///
/// The node is asked to stop over RPC if it has answered server_info, and with SIGTERM if it has
/// not or if the call fails. SIGTERM is sent at most once in a run: a node that receives two in
/// quick succession dies without closing its store. SIGKILL follows after 90 s. Destroying the
/// controller leaves a running node to the watchdog process or the kernel, one of which stops it
/// when this program ends.
class NodeController final : public QObject
{
    Q_OBJECT

public:
    /// How long a node has to stop before it is killed.
    static constexpr std::chrono::seconds killAfter{90};

    /// Returns the user's choice. It may take any length of time, and must not outlive the
    /// controller's owner.
    using Confirm = std::function<QCoro::Task<bool>(Confirmation)>;

    explicit NodeController(std::filesystem::path dataDirectory, NodeHost host = NodeHost(),
                            QObject *parent = nullptr);
    ~NodeController() override;

    const NodeStatus &status() const { return m_status; }
    const std::filesystem::path &dataDirectory() const { return m_data; }
    const NodeConfig &config() const { return m_config; }

    /// The "info" object of the last server_info answer in this run.
    const std::optional<QJsonObject> &lastServerInfo() const { return m_lastServerInfo; }

    /// While a reason is set, start() refuses with it.
    void setStartBlocked(std::optional<QString> reason) { m_startBlocked = std::move(reason); }

    /// Without a Confirm function, clearStorage() does nothing.
    void setConfirm(Confirm confirm) { m_confirm = std::move(confirm); }

    /// The application wants to quit: readyToTerminate() is emitted when the node next ends.
    void setTerminateWhenStopped() { m_terminateWhenStopped = true; }

    /// Starts a node. Does nothing if one is running.
    void start();

    /// Asks the node to stop and returns. Does nothing without a node, or if the node has already
    /// been asked.
    void stop(const std::optional<QString> &reason = std::nullopt);

    /// Stops the node and resumes when it has ended, or immediately if there is none. Several
    /// callers resume in the order of their calls.
    QCoro::Task<> stopAndWait(QString reason);

    /// Asks the user for confirmation, then stops the node if one is running and deletes the store.
    /// Does nothing while a question is open.
    void clearStorage();

signals:
    /// The status has changed, and everything else that the controller reports is up to date. Slots
    /// may call any function of the controller, and may destroy it.
    void statusChanged();

    /// The node has ended without being asked to, has been stopped at a limit, or could not be
    /// started on request. Not emitted if setStartBlocked() made the start wait. Carries the
    /// resulting phase and one line with the reason.
    void endedOnItsOwn(tidewick::Phase phase, const QString &why);

    /// The node has ended after setTerminateWhenStopped(), and all waiting callers have resumed.
    void readyToTerminate();

private:
    // Each event changes a copy of the status and publishes it once, as a whole.
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
    /// Sets the time left. Returns the reason to stop the node now, if there is one.
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
    /// Whether the node reports its own memory use. Once it does, the host is no longer asked.
    bool m_nodeReportsMemory = false;

    // The current run. The child is set exactly while a process exists.
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
    /// Whether the controller itself requested the stop, at a limit.
    bool m_stopIsAutomatic = false;
    bool m_clearAfterStop = false;

    // Destroyed first, so that no task continues in a partly destroyed controller.
    TaskOwner m_pollTask;
    TaskOwner m_stopTask;
    TaskOwner m_killTask;
    TaskOwner m_clearTask;
};

} // namespace tidewick
