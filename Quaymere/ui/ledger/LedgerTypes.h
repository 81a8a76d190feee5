// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include "feed/LedgerFeed.h"
#include "ui/ledger/FigureText.h"
#include "ui/ledger/LedgerCard.h"
#include "ui/ledger/LedgerTexts.h"

#include <array>

namespace tidewick {

/// The transaction types seen live in the ledgers on display, each with its share.
class LedgerTypes final : public LedgerCard
{
    Q_OBJECT

public:
    LedgerTypes(const LedgerLook &look, QWidget *parent);

    /// Sets the types, in display order.
    void setTypes(const QList<LedgerFeed::TypeCount> &types);

    /// The lines on display: the types with their counts, and a remark if there is one.
    QStringList lines() const;
    /// The place of a line.
    QRect lineRect(qsizetype line) const;

    /// The height for the largest number of lines so far, so that the content below stays in place.
    int wantedHeight() const;

signals:
    /// The wanted height has grown.
    void grown();

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    void paintRow(QPainter &painter, qsizetype line) const;
    void paintShare(QPainter &painter, const QRect &track, qsizetype line) const;

    QList<LedgerFeed::TypeCount> m_rows;
    /// The line below the rows, or the only line if there are no rows.
    QString m_remark;
    std::array<FigureText, LedgerTexts::mostTypes> m_counts;
    FigureText m_remarkText;
    int m_lines = 1;
};

} // namespace tidewick
