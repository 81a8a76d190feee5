// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "simnode/LedgerSource.h"

#include "simnode/Recordings.h"

#include <QCryptographicHash>
#include <QtEndian>

namespace tidewick::sim {

namespace {

/// 256 random-looking bits that are determined by the arguments.
QByteArray digest(const char *subject, quint32 index, std::size_t number = 0)
{
    const QByteArray text = QByteArray(subject) + ' ' + QByteArray::number(index) + ' '
                            + QByteArray::number(static_cast<quint64>(number));
    return QCryptographicHash::hash(text, QCryptographicHash::Sha256);
}

QString hashText(const QByteArray &digest)
{
    return QString::fromLatin1(digest.toHex().toUpper());
}

/// A number below `limit` from the digest. `place` selects one of several in the same digest.
quint32 figure(const QByteArray &digest, int place, quint32 limit)
{
    return qFromBigEndian<quint32>(digest.constData() + place * qsizetype{4}) % limit;
}

QString totalCoins(quint32 index)
{
    // On average, each ledger has a hundred transactions, which burn 10 drops each.
    constexpr qint64 atFirst = 100'000'000'000'000'000;
    constexpr qint64 burnt = 1000;
    return QString::number(atFirst - burnt * index);
}

} // namespace

LedgerSource::LedgerSource(int leastTransactions, int mostTransactions)
    : m_least(leastTransactions), m_most(mostTransactions)
{
}

Ledger LedgerSource::ledger(quint32 index) const
{
    const QByteArray own = digest("ledger", index);
    const int count =
        m_least + static_cast<int>(figure(own, 0, static_cast<quint32>(m_most - m_least + 1)));
    Ledger ledger{index,
                  hashText(own),
                  hashText(digest("ledger", index - 1)),
                  hashText(digest("accounts", index)),
                  count == 0 ? QString(64, u'0') : hashText(digest("transactions", index)),
                  totalCoins(index),
                  {}};

    const auto recordings = static_cast<quint32>(Recordings::transactions().size());
    ledger.transactions.reserve(static_cast<std::size_t>(count));
    for (std::size_t i = 0; i < static_cast<std::size_t>(count); ++i) {
        const QByteArray transaction = digest("transaction", index, i);
        ledger.transactions.push_back({hashText(transaction),
                                       figure(transaction, 0, 100'000'000) + 1,
                                       figure(transaction, 1, recordings)});
    }
    return ledger;
}

} // namespace tidewick::sim
