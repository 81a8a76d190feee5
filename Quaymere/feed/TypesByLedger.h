// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QHash>
#include <QList>
#include <QString>

#include <functional>
#include <map>

namespace tidewick {

/// How many transactions of each type were seen in each ledger. It holds no more than a stream of
/// nonsense deserves: of further ledgers nothing is counted, further types are counted together as
/// "Unknown".
class TypesByLedger
{
public:
    struct TypeCount
    {
        QString type;
        qint64 count = 0;

        bool operator==(const TypeCount &) const = default;
    };

    /// The feed keeps 60 ledgers; beside them there are a few whose close has not been seen yet.
    static constexpr std::size_t mostLedgers = 128;
    /// The network knows about 70, the most in one ledger are some 20.
    static constexpr std::size_t mostTypes = 128;

    void add(qint64 ledger, const QString &type);

    /// Forgets the ledgers that are not wanted.
    void keepIf(const std::function<bool(qint64 ledger)> &wanted);

    /// The sums over all ledgers, the largest first.
    QList<TypeCount> totals() const;

    /// How many ledgers are held.
    std::size_t size() const { return m_counts.size(); }

private:
    std::map<qint64, QHash<QString, qint64>> m_counts;
    /// Over all ledgers, none of them 0.
    std::map<QString, qint64> m_sums;
};

} // namespace tidewick
