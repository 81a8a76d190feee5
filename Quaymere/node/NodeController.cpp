// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "node/NodeController.h"

#include "node/BuildInfo.h"
#include "platform/NodePorts.h"
#include "platform/text/NumberText.h"
#include "platform/text/Utf8.h"

#include <QLoggingCategory>
#include <QPointer>

#include <exception>

#include <fcntl.h>

namespace tidewick {

namespace {

Q_LOGGING_CATEGORY(lcNode, "tidewick.node", QtWarningMsg)

constexpr qint32 portProbeMs = 300;

QString messageOf(const std::exception &error)
{
    return Utf8::decodeLossy(QByteArray(error.what()));
}

} // namespace

NodeController::NodeController(std::filesystem::path dataDirectory, NodeHost host, QObject *parent)
    : QObject(parent), m_data(std::move(dataDirectory)), m_host(std::move(host)),
      m_config(m_host.bundle, m_host.defaults), m_log(m_data), m_store(m_data),
      m_rpc(NodePorts::rpc), m_storage(m_host.defaults)
{
}

NodeController::~NodeController()
{
    for (TaskOwner *task : {&m_pollTask, &m_stopTask, &m_killTask, &m_clearTask})
        task->cancel();
    for (OneShot<bool> *waiter : std::exchange(m_stopWaiters, {}))
        waiter->resolve(false);
}

/// The only place where the status changes.
void NodeController::publish(const NodeStatus &next, const char *why)
{
    if (next == m_status)
        return;
    if (next.phase != m_status.phase)
        qCDebug(lcNode, "%s -> %s: %s", phaseName(m_status.phase), phaseName(next.phase), why);
    m_status = next;
    emit statusChanged();
}

void NodeController::fail(NodeStatus &next, const QString &text)
{
    next.phase = Phase::Error;
    next.errorText = text;
    next.detail = text.section(u'\n', 0, 0);
}

void NodeController::start()
{
    if (m_child)
        return;
    NodeStatus next = m_status;
    if (m_startBlocked) {
        next.detail = *m_startBlocked;
    } else {
        next.errorText.reset();
        next.advice.reset();
        m_stopReason.reset();
        Defaults defaults = m_host.defaults;
        defaults.refresh();
        m_limits = RunLimits::read(defaults);
        if (const auto refusal = reasonToRefuse())
            fail(next, *refusal);
        else
            launch(next);
    }

    const QPointer<NodeController> alive(this);
    const bool refused = !m_child && !m_startBlocked;
    publish(next, qUtf8Printable(next.detail));
    if (alive && refused)
        emit endedOnItsOwn(next.phase, next.detail);
}

std::optional<QString> NodeController::reasonToRefuse() const
{
    if (m_host.portInUse(NodePorts::rpc, portProbeMs)
        || m_host.portInUse(NodePorts::webSocket, portProbeMs)) {
        return QStringLiteral("Port %1 or %2 is in use. Another node may be running.")
            .arg(NodePorts::rpc)
            .arg(NodePorts::webSocket);
    }
    const std::optional<double> free = m_host.freeGB(m_data);
    if (free && m_limits.diskGuardGB > *free) {
        return QStringLiteral("Only %1 GB free; the disk guard needs %2 GB.")
            .arg(NumberText::fixed(*free, 1), NumberText::fixed(m_limits.diskGuardGB, 0));
    }
    return std::nullopt;
}

void NodeController::launch(NodeStatus &next)
{
    try {
        NodeConfig::checkDataDirectory(m_data);
        Files::createOwnFolder(m_data);
        const std::filesystem::path configuration = m_config.render(m_data);
        NodeLog::rotate(m_log.path());
        NodeLog::rotate(m_data / "debug.log");
        const UniqueDescriptor log = m_log.open();
        m_launchOffset = NodeLog::length(log);
        const UniqueDescriptor nothing(::open("/dev/null", O_RDONLY | O_CLOEXEC));

        ChildSpec spec;
        spec.executable = m_config.nodeExecutable();
        spec.arguments = {"--conf", configuration.string()};
        spec.environment = m_config.environment();
        spec.workingDirectory = m_data;
        spec.standardInput = nothing.get();
        spec.standardOutput = log.get();
        spec.standardError = log.get();
        spec.ownProcessGroup = true;
        beginRun(next, m_host.spawn(spec));
    } catch (const std::exception &error) {
        m_rpcAnswered = false;
        fail(next, QLatin1String("Could not start the node: ") + messageOf(error));
        next.advice = adviceAfter({});
    }
}

void NodeController::beginRun(NodeStatus &next, std::unique_ptr<ChildProcess> child)
{
    m_child = std::move(child);
    connect(m_child.get(), &ChildProcess::exited, this, &NodeController::exited);
    m_startedAt = m_host.clock->suspendingNow();
    m_firstFullAt.reset();
    m_rpcAnswered = false;
    m_lastServerInfo.reset();
    m_bootstrap = {};
    m_soFar = RunSoFar(m_startedAt);
    m_stopRequested = false;
    m_stopIsAutomatic = false;

    next.hasProcess = true;
    next.hasServerInfo = false;
    next.phase = Phase::Starting;
    next.detail = QStringLiteral("Opening the store");
    startPolling();
}

void NodeController::exited(int status, bool signaled)
{
    for (TaskOwner *task : {&m_pollTask, &m_stopTask, &m_killTask})
        task->cancel();
    m_child.release()->deleteLater();

    NodeStatus next = m_status;
    next.hasProcess = false;
    next.advice.reset();
    next.peers.reset();
    next.ledgerSeq.reset();
    next.timeLeft.reset();
    next.ledger = next.uptime = next.memory = NodeStatus::unknown();
    const bool unasked = !m_stopRequested || m_stopIsAutomatic;
    if (std::exchange(m_stopRequested, false)) {
        next.phase = Phase::Stopped;
        next.detail = m_stopReason.value_or(QStringLiteral("Stopped"));
    } else {
        const QString lastWords = m_log.tail(m_launchOffset);
        fail(next, QStringLiteral("The node exited unexpectedly (%1 %2).\n\n%3")
                       .arg(signaled ? QStringLiteral("signal") : QStringLiteral("exit status"),
                            QString::number(status), lastWords));
        next.advice = adviceAfter(lastWords);
    }
    const NodeStatus ended = next; // before the next steps change the texts
    if (std::exchange(m_clearAfterStop, false))
        removeDatabase(next);
    refreshDisk(next, m_store.dataSize());

    // From here on, slots and waiters may do anything, such as start a new run or destroy this
    // controller.
    const QPointer<NodeController> alive(this);
    const std::vector<OneShot<bool> *> waiters = std::exchange(m_stopWaiters, {});
    publish(next, qUtf8Printable(next.detail));
    if (alive && unasked)
        emit endedOnItsOwn(ended.phase, ended.detail);
    for (OneShot<bool> *waiter : waiters)
        waiter->resolve(true);
    if (alive && m_terminateWhenStopped)
        emit readyToTerminate();
}

std::optional<Advice> NodeController::adviceAfter(const QString &lastWords) const
{
    const std::filesystem::path executable = m_config.nodeExecutable();
    std::error_code error;
    EndedNode node;
    // In a package the link is relative.
    node.executable = executable;
    if (std::filesystem::is_symlink(executable, error)) {
        const std::filesystem::path target = std::filesystem::read_symlink(executable, error);
        node.executable = (executable.parent_path() / target).lexically_normal();
    }
    node.executableExists = std::filesystem::exists(executable, error);
    node.hasAnswered = m_rpcAnswered;
    node.lastWords = lastWords;
    node.hasMossgrid = BuildInfo::hasMossgrid(m_config.buildInfo());
    return adviceOn(node);
}

} // namespace tidewick
