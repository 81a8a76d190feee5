// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include "platform/time/Clock.h"

#include <QJsonObject>
#include <QString>

#include <optional>

namespace tidewick {

/// The node's first download of the ledger, as its counts tell it: kept from one answer to the next
/// to show how fast the store grows. A value for one run of the node.
class BootstrapProgress
{
public:
    /// Takes up an answer to get_counts; one without "stream_bootstrap" leaves nothing to report.
    void update(const QJsonObject &counts, SuspendingClock::time_point now);

    /// Whether a node in this state is bootstrapping, as far as the last counts tell.
    bool covers(const QString &serverState) const;

    /// For example "catching up · 3.1 MB/s · 2 passes · 120 ledgers behind".
    QString detail() const;

    /// Growth of the store, such as "12.3 MB/s"; nothing until two answers allow one.
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
