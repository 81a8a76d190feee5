// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "feed/TypesByLedger.h"

#include <algorithm>

namespace tidewick {

void TypesByLedger::add(qint64 ledger, const QString &type)
{
    auto entry = m_counts.find(ledger);
    if (entry == m_counts.end()) {
        if (m_counts.size() >= mostLedgers)
            return;
        entry = m_counts.try_emplace(ledger).first;
    }
    QHash<QString, qint64> &counts = entry->second;
    if (const auto known = counts.find(type); known != counts.end())
        ++*known;
    else
        ++counts[counts.size() < mostTypes ? type : QStringLiteral("Unknown")];
}

void TypesByLedger::keepIf(const std::function<bool(qint64)> &wanted)
{
    std::erase_if(m_counts, [&](const auto &entry) { return !wanted(entry.first); });
}

QList<TypesByLedger::TypeCount> TypesByLedger::totals() const
{
    std::map<QString, qint64> sums;
    for (const auto &[ledger, counts] : m_counts)
        for (auto count = counts.begin(); count != counts.end(); ++count)
            sums[count.key()] += count.value();

    QList<TypeCount> totals;
    totals.reserve(qsizetype(sums.size()));
    for (const auto &[type, count] : sums)
        totals.append({type, count});
    std::stable_sort(totals.begin(), totals.end(),
                     [](const auto &a, const auto &b) { return a.count > b.count; });
    return totals;
}

} // namespace tidewick
