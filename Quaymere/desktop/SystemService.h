// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QObject>
#include <QString>

namespace tidewick {

/// Whether a service of the system's service manager is running. Never waits for the manager: what
/// is known is its latest answer. Without a system bus or such a manager nothing is running there.
/// Main thread only.
class SystemService final : public QObject
{
    Q_OBJECT

public:
    /// The unit's name, such as "xrpld.service".
    explicit SystemService(QString unit, QObject *parent = nullptr);

    /// Asks the manager, unless it still owes an answer.
    void look();

    /// As of the latest answer; false before the first.
    bool isActive() const { return m_isActive; }

private:
    QString m_unit;
    bool m_isActive = false;
    bool m_isLooking = false;
};

} // namespace tidewick
