// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "application/Notices.h"

#include "ui/menu/MenuRows.h"

#include <utility>

namespace tidewick {

Notices::Notices(NodeController &node, const QDBusConnection &bus) : m_node(node), m_notifier(bus)
{
    connect(&node, &NodeController::statusChanged, this, &Notices::followStatus);
    connect(&node, &NodeController::endedOnItsOwn, this, &Notices::tellOfEnd);
    connect(&m_notifier, &Notifier::actionChosen, this, &Notices::installationWanted);
}

void Notices::followStatus()
{
    const NodeStatus &status = m_node.status();
    if (!std::exchange(m_hadProcess, status.hasProcess))
        m_told.clear();
    // Advice about the end of a run is part of the notification that reports the end.
    if (status.hasProcess && status.advice && m_told.insert(status.advice->cause).second)
        m_notifier.notify(phaseTitle(status.phase), status.advice->text);
}

void Notices::tellOfEnd(Phase phase, const QString &why)
{
    const QString summary =
        phase == Phase::Error ? QStringLiteral("Node error") : QStringLiteral("Node stopped");
    const std::optional<Advice> &advice = m_node.status().advice;
    if (!advice)
        return m_notifier.notify(summary, why);
    if (advice->cause == Advice::Cause::NodeMissing)
        return m_notifier.notify(summary, advice->text, installNodeLabel());
    m_notifier.notify(summary, why + u' ' + advice->text);
}

} // namespace tidewick
