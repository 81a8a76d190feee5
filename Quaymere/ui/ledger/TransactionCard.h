// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include "ui/ledger/TransactionList.h"

namespace tidewick {

/// The card that holds the list of the latest transactions.
class TransactionCard final : public LedgerCard
{
    Q_OBJECT

public:
    TransactionCard(const LedgerLook &look, QWidget *parent);

    /// From the list's edges to its rows, which line up with the texts of the other cards.
    static int rowMargin(const LedgerMetrics &metrics);

    /// Shows these transactions, of which the first `arrived` are new.
    void setTransactions(const QList<LedgerFeed::Tx> &txs, qsizetype arrived);

    void lookChanged() override;

signals:
    void chosen(const QString &hash);

protected:
    void paintEvent(QPaintEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;

private:
    void arrange();

    TransactionList *m_list;
};

} // namespace tidewick
