// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include "desktop/Notifier.h"
#include "node/NodeController.h"

#include <QObject>

#include <set>

namespace tidewick {

/// What the desktop is told of the node as notifications: that it has ended by itself, and why, and
/// in each of its runs every cause of advice once. Owned by the application; main thread only.
class Notices final : public QObject
{
    Q_OBJECT

public:
    Notices(NodeController &node, const QDBusConnection &bus);

signals:
    /// The user wants to know how a node is installed.
    void installationWanted();

private:
    void followStatus();
    void tellOfEnd(Phase phase, const QString &why);

    NodeController &m_node;
    Notifier m_notifier;
    bool m_hadProcess = false;
    /// In this run of the node.
    std::set<Advice::Cause> m_told;
};

} // namespace tidewick
