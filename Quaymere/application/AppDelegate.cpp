// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "application/AppDelegate.h"

#include "desktop/NodeScope.h"

#include <utility>

namespace tidewick {

namespace {

using namespace std::chrono_literals;

constexpr std::chrono::milliseconds lookInterval = 100ms;
/// By then the watchdog process of the previous run has killed its node.
constexpr std::chrono::milliseconds longestWait = 100s;

} // namespace

AppDelegate::AppDelegate(const Guards &guards, QObject *parent)
    : QObject(parent), m_guards(guards), m_otherNode(QStringLiteral("xrpld.service")),
      m_node(NodeConfig::dataDirectory(), hostOfNode())
{
    connect(&m_node, &NodeController::readyToTerminate, this, &AppDelegate::terminated);
    connect(&m_launched, &QTimer::timeout, this, &AppDelegate::applicationDidFinishLaunching);
    m_launched.setSingleShot(true);
    m_launched.start(0);
    connect(&m_lookAgain, &QTimer::timeout, this, &AppDelegate::startWhenAlone);
}

NodeHost AppDelegate::hostOfNode()
{
    NodeHost host(&m_guards.deathWatch);
    host.hasCompany = [this, portAnswers = host.hasCompany] {
        m_otherNode.look();
        return m_otherNode.isActive() || portAnswers();
    };
    host.spawn = [this, spawn = host.spawn](const ChildSpec &spec) {
        std::unique_ptr<ChildProcess> node = spawn(spec);
        NodeScope::moveThere(node->id(), m_guards.supervisor);
        return node;
    };
    return host;
}

void AppDelegate::applicationDidFinishLaunching()
{
    m_waited.start();
    startWhenAlone();
}

void AppDelegate::startWhenAlone()
{
    // A request to quit may have come first.
    if (m_terminating)
        return;
    if (!m_guards.deathWatch.isAlone() && !m_waited.hasExpired(longestWait.count())) {
        m_node.setStartBlocked(QStringLiteral("Waiting for the previous node to stop"));
        if (!m_lookAgain.isActive()) {
            m_lookAgain.start(lookInterval);
            m_node.start(); // refused, so the status shows the reason
        }
        return;
    }
    m_lookAgain.stop();
    m_node.setStartBlocked(std::nullopt);
    m_node.start();
}

AppDelegate::TerminateReply AppDelegate::applicationShouldTerminate()
{
    if (!m_node.status().hasProcess)
        return TerminateReply::Now;
    m_node.setTerminateWhenStopped();
    m_node.stop(QStringLiteral("Quitting"));
    return TerminateReply::Later;
}

void AppDelegate::terminate()
{
    if (!std::exchange(m_terminating, true))
        emit terminating();
    if (applicationShouldTerminate() == TerminateReply::Now)
        emit terminated();
}

} // namespace tidewick
