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
    const bool hasPlace = m_sums.contains(type) || m_sums.size() < mostTypes;
    const QString counted = hasPlace ? type : QStringLiteral("Unknown");
    ++entry->second[counted];
    ++m_sums[counted];
}

void TypesByLedger::keepIf(const std::function<bool(qint64)> &wanted)
{
    std::erase_if(m_counts, [&](const auto &entry) {
        const auto &[ledger, counts] = entry;
        if (wanted(ledger))
            return false;
        for (auto count = counts.begin(); count != counts.end(); ++count)
            m_sums[count.key()] -= count.value();
        return true;
    });
    std::erase_if(m_sums, [](const auto &sum) { return sum.second == 0; });
}

QList<TypesByLedger::TypeCount> TypesByLedger::totals() const
{
    QList<TypeCount> totals;
    totals.reserve(qsizetype(m_sums.size()));
    for (const auto &[type, count] : m_sums)
        totals.append({type, count});
    std::stable_sort(totals.begin(), totals.end(),
                     [](const auto &a, const auto &b) { return a.count > b.count; });
    return totals;
}

} // namespace tidewick
