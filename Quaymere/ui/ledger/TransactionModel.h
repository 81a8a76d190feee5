// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include "feed/LedgerFeed.h"

#include <QAbstractListModel>

namespace tidewick {

/// The feed's latest transactions as rows. Rows that stay keep their identity when others arrive.
class TransactionModel final : public QAbstractListModel
{
    Q_OBJECT

public:
    /// The content of a row, ready to be shown on one line.
    struct Row
    {
        QString hash;
        QString type;
        QString account;
        QString result;
        QString name;
        bool succeeded = false;
    };

    using QAbstractListModel::QAbstractListModel;

    /// Takes these transactions, of which the first `arrived` are new.
    void setTransactions(const QList<LedgerFeed::Tx> &txs, qsizetype arrived);

    const Row &row(const QModelIndex &index) const { return m_rows.at(index.row()); }

    int rowCount(const QModelIndex &parent = {}) const override;
    /// Returns the row's accessible name. The visible content is drawn from row().
    QVariant data(const QModelIndex &index, int role) const override;

private:
    QList<Row> m_rows;
};

} // namespace tidewick
