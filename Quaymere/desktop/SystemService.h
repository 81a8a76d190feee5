// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QObject>
#include <QString>

namespace tidewick {

/// Reports whether a unit of the system's service manager is running. Never waits for the manager:
/// isActive() is its latest answer. Only the first look() may wait, 1 s at most, if the system bus
/// is silent. Without a system bus or such a manager, the unit counts as not running. Main thread
/// only.
class SystemService final : public QObject
{
    Q_OBJECT

public:
    /// The unit's name, such as "xrpld.service".
    explicit SystemService(QString unit, QObject *parent = nullptr);

    /// Asks the service manager, unless an earlier request is still pending.
    void look();

    /// As of the latest answer; false before the first.
    bool isActive() const { return m_isActive; }

private:
    QString m_unit;
    bool m_isActive = false;
    bool m_isLooking = false;
};

} // namespace tidewick
