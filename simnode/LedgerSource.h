// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QString>

#include <vector>

namespace tidewick::sim {

/// One transaction of a ledger; all else in it is as recorded.
struct LedgerTransaction
{
    QString hash;
    quint32 sequence;
    /// Which of the recorded transactions it is modelled on.
    std::size_t recording;
};

/// A ledger of the simulated network, but for its time.
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

/// Makes up ledgers. Each is a function of its index alone, so that all who are told of it at any
/// time, even by another run, are told the same.
class LedgerSource
{
public:
    /// Each ledger has at least and at most so many transactions.
    LedgerSource(int leastTransactions, int mostTransactions);

    /// The ledger of this index, from any time.
    Ledger ledger(quint32 index) const;

private:
    int m_least;
    int m_most;
};

} // namespace tidewick::sim
