// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include "platform/time/Clock.h"

#include <QObject>

#include <optional>

namespace tidewick {

/// How long ago the newest ledger arrived, once ledgers no longer arrive. Owned by the ledger
/// window; main thread only. It wakes up only while somebody sees an age, and only when its text
/// changes.
class LedgerAge final : public QObject
{
    Q_OBJECT

public:
    explicit LedgerAge(std::shared_ptr<Clock> clock);

    /// Takes whether the stream is connected and the index of the newest ledger, if there is one.
    void follow(bool connected, std::optional<qint64> newest);

    /// Sets whether somebody can see the age; not at first.
    void setShown(bool shown);

    /// Whether there are figures, and no new ledger since the connection was lost.
    bool isOld() const { return m_isOld; }

    /// The age in words; empty unless the figures are old.
    QString text() const;

signals:
    void changed();

private:
    std::chrono::nanoseconds age() const;
    void wake();
    void wakeLater();

    std::shared_ptr<Clock> m_clock;
    std::optional<qint64> m_newest;
    ContinuousClock::time_point m_arrived;
    bool m_isOld = false;
    bool m_isShown = false;
    /// Set while the age is shown.
    std::unique_ptr<Alarm> m_alarm;
};

} // namespace tidewick
