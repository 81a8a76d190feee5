// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QHash>
#include <QList>
#include <QString>

#include <functional>
#include <map>

namespace tidewick {

/// Counts the transactions of each type in each ledger. Its memory use is bounded even if the
/// stream is nonsense: beyond the limits, further ledgers are not counted, and further types are
/// counted together as "Unknown".
class TypesByLedger
{
public:
    struct TypeCount
    {
        QString type;
        qint64 count = 0;

        bool operator==(const TypeCount &) const = default;
    };

    /// The feed keeps 60 ledgers. There are also a few whose close has not been seen yet.
    static constexpr std::size_t mostLedgers = 128;
    /// The network has about 70, and a single ledger at most about 20.
    static constexpr std::size_t mostTypes = 128;

    void add(qint64 ledger, const QString &type);

    /// Drops the ledgers that are not wanted.
    void keepIf(const std::function<bool(qint64 ledger)> &wanted);

    /// The totals over all ledgers, largest first.
    QList<TypeCount> totals() const;

    /// How many ledgers are held.
    std::size_t size() const { return m_counts.size(); }

private:
    std::map<qint64, QHash<QString, qint64>> m_counts;
    /// Totals over all ledgers; none of them is 0.
    std::map<QString, qint64> m_sums;
};

} // namespace tidewick
