// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QString>

#include <vector>

namespace tidewick::sim {

/// One transaction of a ledger; everything else in it is as recorded.
struct LedgerTransaction
{
    QString hash;
    quint32 sequence;
    /// The number of the recorded transaction that it is modelled on.
    std::size_t recording;
};

/// A ledger of the simulated network, except for its close time.
struct Ledger
{
    quint32 index;
    QString hash;
    QString parentHash;
    QString accountHash;
    QString transactionHash;
    /// Drops of XRP in existence.
    QString totalCoins;
    /// In the order in which they were applied.
    std::vector<LedgerTransaction> transactions;
};

/// Makes up ledgers. Each is a function of its index alone, so that all clients see the same ledger
/// at any time, even in another run.
class LedgerSource
{
public:
    /// The bounds for the number of transactions in a ledger, both inclusive.
    LedgerSource(int leastTransactions, int mostTransactions);

    /// The ledger with this index, past or future.
    Ledger ledger(quint32 index) const;

private:
    int m_least;
    int m_most;
};

} // namespace tidewick::sim
