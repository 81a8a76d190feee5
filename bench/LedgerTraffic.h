// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include "support/ScriptedStream.h"

#include <QStringList>

namespace tidewick::bench {

/// Simulates a busy network for a feed: 200 transactions a second, and a ledger every 4 s, made
/// from recorded messages. It delivers them as fast as the feed takes them.
class LedgerTraffic
{
public:
    LedgerTraffic();

    ScriptedStream &stream() { return m_stream; }

    /// The recorded transaction messages.
    const QStringList &recorded() const { return m_recorded; }

    /// Runs this much time of traffic on the stream's clock, and the event loop at every flush.
    void run(std::chrono::seconds time);

    /// Sends this number of transactions in the newest ledger.
    void transact(int count);

private:
    void close();

    ScriptedStream m_stream;
    QStringList m_recorded;
    qsizetype m_next = 0;
    qint64 m_ledger = 98'000'000;
};

} // namespace tidewick::bench
