// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "AppDelegate.h"

namespace tidewick {

AppDelegate::AppDelegate(const DeathWatch &deathWatch, QObject *parent)
    : QObject(parent), m_node(NodeConfig::dataDirectory(), NodeHost(&deathWatch))
{
    connect(&m_node, &NodeController::readyToTerminate, this, &AppDelegate::terminated);
}

void AppDelegate::applicationDidFinishLaunching()
{
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
    if (applicationShouldTerminate() == TerminateReply::Now)
        emit terminated();
}

} // namespace tidewick
