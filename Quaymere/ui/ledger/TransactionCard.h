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

    /// From the list's edges to its rows, which stand in line with the other cards' texts.
    static int rowMargin(const LedgerMetrics &metrics);

    /// The list, of which so many at the front are new.
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
