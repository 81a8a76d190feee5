// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include "platform/time/Clock.h"

#include <QJsonObject>
#include <QString>

#include <optional>

namespace tidewick {

/// The progress of the node's first download of the ledger, according to its counts. Kept from one
/// answer to the next to show how fast the store grows. A value for one run of the node.
class BootstrapProgress
{
public:
    /// Updates the progress from an answer to get_counts. Without "stream_bootstrap" in the answer,
    /// there is nothing to report.
    void update(const QJsonObject &counts, SuspendingClock::time_point now);

    /// Whether a node in this state is bootstrapping, according to the last counts.
    bool covers(const QString &serverState) const;

    /// The progress as text, for example "catching up · 3.1 MB/s · 2 passes · 120 ledgers behind".
    QString detail() const;

    /// Growth of the store, such as "12.3 MB/s"; nothing until two answers yield one.
    const std::optional<QString> &rate() const { return m_rate; }

private:
    struct Sample
    {
        double bytes;
        SuspendingClock::time_point at;
    };

    void sampleRate(SuspendingClock::time_point now);

    std::optional<QJsonObject> m_last;
    std::optional<Sample> m_sample;
    std::optional<QString> m_rate;
};

} // namespace tidewick
