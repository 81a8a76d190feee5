// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include "support/ScriptedStream.h"

#include <QStringList>

namespace tidewick::bench {

/// A busy network for a feed: 200 transactions a second in ledgers of 4 s, made of recorded
/// messages, as fast as the feed takes them.
class LedgerTraffic
{
public:
    LedgerTraffic();

    ScriptedStream &stream() { return m_stream; }

    /// The recorded transaction messages.
    const QStringList &recorded() const { return m_recorded; }

    /// So much time of traffic passes on the stream's clock; the event loop turns at every flush.
    void run(std::chrono::seconds time);

    /// So many transactions come in the newest ledger.
    void transact(int count);

private:
    void close();

    ScriptedStream m_stream;
    QStringList m_recorded;
    qsizetype m_next = 0;
    qint64 m_ledger = 98'000'000;
};

} // namespace tidewick::bench
