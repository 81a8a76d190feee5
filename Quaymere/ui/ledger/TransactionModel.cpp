// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "ui/ledger/TransactionModel.h"

#include "platform/text/DisplayText.h"
#include "ui/ledger/LedgerTexts.h"

namespace tidewick {

namespace {

TransactionModel::Row rowFor(const LedgerFeed::Tx &tx)
{
    return {
        .hash = tx.id,
        .type = DisplayText::singleLine(tx.type),
        .account = DisplayText::singleLine(LedgerTexts::account(tx.account)),
        .result = DisplayText::singleLine(tx.result),
        .name = DisplayText::singleLine(LedgerTexts::rowName(tx)),
        .succeeded = tx.result == u"tesSUCCESS",
    };
}

} // namespace

void TransactionModel::setTransactions(const QList<LedgerFeed::Tx> &txs, qsizetype arrived)
{
    const qsizetype staying = txs.size() - arrived;
    if (staying < m_rows.size()) {
        beginRemoveRows({}, int(staying), int(m_rows.size()) - 1);
        m_rows.resize(staying);
        endRemoveRows();
    }
    if (arrived == 0)
        return;
    QList<Row> rows;
    rows.reserve(txs.size());
    for (const LedgerFeed::Tx &tx : txs.first(arrived))
        rows.append(rowFor(tx));
    beginInsertRows({}, 0, int(arrived) - 1);
    m_rows = std::move(rows) + m_rows;
    endInsertRows();
}

int TransactionModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : int(m_rows.size());
}

QVariant TransactionModel::data(const QModelIndex &index, int role) const
{
    if (!index.isValid() || role != Qt::AccessibleTextRole)
        return {};
    return row(index).name;
}

} // namespace tidewick
