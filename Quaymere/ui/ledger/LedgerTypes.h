// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include "feed/LedgerFeed.h"
#include "ui/ledger/LedgerCard.h"

namespace tidewick {

/// The transaction types seen live in the ledgers in view, each with its share.
class LedgerTypes final : public LedgerCard
{
    Q_OBJECT

public:
    LedgerTypes(const LedgerLook &look, QWidget *parent);

    /// In the order in which they are shown.
    void setTypes(const QList<LedgerFeed::TypeCount> &types);

    /// The height that shows the most lines there have been; what stands below has its place.
    int wantedHeight() const;

signals:
    /// More height is wanted.
    void grown();

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    void paintRow(QPainter &painter, const QRect &row, const LedgerFeed::TypeCount &type) const;

    QList<LedgerFeed::TypeCount> m_rows;
    /// Stands below the rows, or in their place.
    QString m_remark;
    int m_lines = 1;
};

} // namespace tidewick
