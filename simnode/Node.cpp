// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "simnode/Node.h"

#include "simnode/Chatter.h"
#include "simnode/Ending.h"

#include <QCoreApplication>

#include <algorithm>
#include <csignal>

namespace tidewick::sim {

namespace {

using namespace std::chrono_literals;

/// In simulated time.
constexpr Seconds usualStartDelay(0.7);
/// A stopping node still answers for this long.
constexpr std::chrono::milliseconds lastAnswers = 80ms;
/// The time from finding a port in use to giving up.
constexpr std::chrono::milliseconds givingUp = 300ms;

std::chrono::milliseconds timerSpan(Seconds seconds)
{
    return std::chrono::ceil<std::chrono::milliseconds>(seconds);
}

QString placeOf(const PortConfiguration &port)
{
    return port.address.toString() + u':' + QString::number(port.number);
}

} // namespace

Node::Node(NodeConfiguration configuration, Scenario scenario, DebugLog &log)
    : m_configuration(std::move(configuration)), m_scenario(std::move(scenario)), m_log(log),
      m_signals({SIGTERM, SIGINT, SIGHUP, SIGUSR1}),
      m_simulation(m_configuration, m_scenario, m_log)
{
    for (QTimer *timer : {&m_openTimer, &m_scriptTimer, &m_closeTimer, &m_exitTimer})
        timer->setSingleShot(true);
    connect(&m_openTimer, &QTimer::timeout, this, &Node::openPorts);
    connect(&m_scriptTimer, &QTimer::timeout, this, &Node::endAsScripted);
    connect(&m_closeTimer, &QTimer::timeout, this, &Node::closePorts);
    connect(&m_exitTimer, &QTimer::timeout, this, [this] {
        m_log.info("Application", QStringLiteral("Done."));
        QCoreApplication::exit(m_exitStatus);
    });
    connect(&m_signals, &SignalListener::received, this, &Node::receiveSignal);
    connect(&m_simulation, &Simulation::storeFailed, this, &Node::abortWithoutStore);
    connect(&m_simulation, &Simulation::ledgerClosed, this, [this](quint32 index) {
        for (const auto &server : m_streamServers)
            server->publish(index);
    });
}

void Node::start()
{
    const Seconds delay = m_scenario.startDelay.value_or(usualStartDelay / m_scenario.speed);
    m_openTimer.start(timerSpan(delay));
    takeCue(Scenario::Cue::Start);
}

void Node::takeCue(Scenario::Cue cue)
{
    if (m_scenario.ending && m_scenario.endingCue == cue)
        m_scriptTimer.start(timerSpan(m_scenario.endingAfter));
}

void Node::openPorts()
{
    if (m_stopping)
        return;
    const auto &ports = m_configuration.ports;
    const bool open = !m_scenario.listens
                      || std::all_of(ports.begin(), ports.end(),
                                     [this](const auto &port) { return openPort(port); });
    if (!open) {
        closePorts();
        leave(refusalStatus, givingUp);
        return;
    }
    m_log.info("Application", QStringLiteral("Application starting"));
    m_simulation.start();
    if (m_scenario.floodBytes > 0)
        m_flood = Chatter::flood(m_scenario.floodBytes);
}

bool Node::openPort(const PortConfiguration &port)
{
    QString error;
    const bool http = port.protocol == PortConfiguration::Protocol::Http;
    if (!(http ? openHttp(port, error) : openStream(port, error))) {
        m_log.write(
            "Server", DebugLog::Severity::Fatal,
            QStringLiteral("cannot open '%1' at %2: %3").arg(port.name, placeOf(port), error));
        return false;
    }
    m_log.info("Server", QStringLiteral("Opened '%1' (ip=%2, %3)")
                             .arg(port.name, placeOf(port),
                                  http ? QStringLiteral("http") : QStringLiteral("ws")));
    return true;
}

bool Node::openHttp(const PortConfiguration &port, QString &error)
{
    auto server = std::make_unique<HttpServer>(
        [this](const QString &method, const QJsonObject &parameters) {
            return carryOut(method, parameters);
        },
        m_scenario.faults, m_log);
    const bool open = server->open(port);
    error = server->errorString();
    m_httpServers.push_back(std::move(server));
    return open;
}

bool Node::openStream(const PortConfiguration &port, QString &error)
{
    StreamServer::Source source{m_simulation.ledgers(), [this] { return m_simulation.validated(); },
                                [this](const QString &command, const QJsonObject &request) {
                                    return carryOut(command, request);
                                }};
    auto server = std::make_unique<StreamServer>(std::move(source), m_scenario.streamFaults, m_log);
    const bool open = server->open(port);
    error = server->errorString();
    m_streamServers.push_back(std::move(server));
    return open;
}

void Node::closePorts()
{
    m_httpServers.clear();
    m_streamServers.clear();
}

Reply Node::carryOut(const QString &command, const QJsonObject &request)
{
    if (command == u"stop" && !m_scenario.stopHangs)
        beginStop();
    return m_simulation.answer(command, request);
}

void Node::receiveSignal(int number)
{
    m_log.info("Application", QStringLiteral("signal %1").arg(number));
    if (number == SIGTERM && m_scenario.ignoresSigterm)
        return;
    if (number == SIGUSR1) {
        for (const auto &server : m_httpServers)
            server->cueFaults();
        if (m_scenario.heals)
            m_simulation.heal();
        takeCue(Scenario::Cue::User);
        return;
    }
    // A second signal may have arrived before the first one restored its default action.
    if (number == SIGHUP || m_signalled)
        dieOf(number);
    m_signalled = true;
    ::signal(SIGINT, SIG_DFL);
    if (!m_scenario.ignoresSigterm)
        ::signal(SIGTERM, SIG_DFL);
    beginStop();
}

void Node::beginStop()
{
    if (m_stopping)
        return;
    m_stopping = true;
    m_log.write("Application", DebugLog::Severity::Warning, QStringLiteral("Server stopping"));
    takeCue(Scenario::Cue::Stop);
    m_closeTimer.start(lastAnswers);
    leave(EXIT_SUCCESS, timerSpan(m_scenario.stopDelay));
}

void Node::leave(int status, std::chrono::milliseconds after)
{
    m_exitStatus = status;
    m_exitTimer.start(after);
}

void Node::endAsScripted()
{
    const Ending ending = *m_scenario.ending;
    if (ending.signaled)
        dieOf(ending.number);
    QCoreApplication::exit(ending.number);
}

void Node::abortWithoutStore(const QString &text)
{
    m_log.write("NodeStore", DebugLog::Severity::Fatal, text);
    dieOf(SIGABRT);
}

} // namespace tidewick::sim
