// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include "desktop/Notifier.h"
#include "node/NodeController.h"

#include <QObject>

#include <set>

namespace tidewick {

/// Shows desktop notifications about the node: one with the reason when it ends on its own, and one
/// for each cause of advice, once per run. Owned by the application; main thread only.
class Notices final : public QObject
{
    Q_OBJECT

public:
    Notices(NodeController &node, const QDBusConnection &bus);

signals:
    /// The user asked how to install a node.
    void installationWanted();

private:
    void followStatus();
    void tellOfEnd(Phase phase, const QString &why);

    NodeController &m_node;
    Notifier m_notifier;
    bool m_hadProcess = false;
    /// The causes already announced in this run of the node.
    std::set<Advice::Cause> m_told;
};

} // namespace tidewick
