// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "AppDelegate.h"

#include <utility>

namespace tidewick {

AppDelegate::AppDelegate(const DeathWatch &deathWatch, QObject *parent)
    : QObject(parent), m_node(NodeConfig::dataDirectory(), NodeHost(&deathWatch))
{
    connect(&m_node, &NodeController::readyToTerminate, this, &AppDelegate::terminated);
    connect(&m_launched, &QTimer::timeout, this, &AppDelegate::applicationDidFinishLaunching);
    m_launched.setSingleShot(true);
    m_launched.start(0);
}

void AppDelegate::applicationDidFinishLaunching()
{
    // A request to quit may have been faster.
    if (!m_terminating)
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
