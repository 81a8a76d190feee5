// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include "feed/LedgerFeed.h"
#include "ui/ledger/LedgerCard.h"

#include <QVariantAnimation>

namespace tidewick {

/// A bar for each closed ledger, the newest at the right edge, and a line at their average. The
/// ledger pointed at or, with the keyboard, stepped to is told of above the bars; a click or Enter
/// chooses it. Assistive software meets the bars as the items of a list.
class LedgerHistogram final : public LedgerCard
{
    Q_OBJECT

public:
    LedgerHistogram(const LedgerLook &look, QWidget *parent);

    /// Oldest first. When the newest is one more than before, the bars move up for it.
    void setLedgers(const QList<LedgerFeed::Ledger> &ledgers);
    const QList<LedgerFeed::Ledger> &ledgers() const { return m_ledgers; }

    /// The bar's column, over the whole height of the chart.
    QRect column(qsizetype position) const;

    /// The bar that the keyboard is at; -1 when it is at none.
    qsizetype current() const;

    void choose(qsizetype position);

    void lookChanged() override;

signals:
    void chosen(qint64 ledger);

protected:
    void paintEvent(QPaintEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;
    void hideEvent(QHideEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;
    void leaveEvent(QEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void focusInEvent(QFocusEvent *event) override;
    void focusOutEvent(QFocusEvent *event) override;

private:
    using Index = std::optional<qint64>;

    QRect chart() const;
    QString label() const;
    qsizetype position(Index ledger) const;
    QRect target(qsizetype position) const;
    Index ledgerAt(const QPoint &point) const;
    void hover(Index ledger);
    void stepTo(qsizetype position);
    void updateBar(qsizetype position);
    void updateChart();
    void settle();

    void paintBars(QPainter &painter, const QRect &area) const;
    void paintAverage(QPainter &painter) const;
    void paintFocus(QPainter &painter) const;

    QList<LedgerFeed::Ledger> m_ledgers;
    Index m_hoveredLedger;
    Index m_pressedLedger;
    /// What took the press, where that was at the time.
    QRect m_pressedTarget;
    /// The place that the keyboard is or was at; -1 before it came.
    qsizetype m_current = -1;
    /// Where the pointer is, if it is here.
    std::optional<QPoint> m_pointer;

    /// From the bars as they were, at 0, to the bars as they are, at 1.
    QVariantAnimation m_move;
    double m_largestBefore = 0;
};

} // namespace tidewick
