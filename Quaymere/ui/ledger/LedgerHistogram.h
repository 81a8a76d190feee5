// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include "feed/LedgerFeed.h"
#include "ui/ledger/FigureText.h"
#include "ui/ledger/LedgerCard.h"

#include <QVariantAnimation>

namespace tidewick {

/// Shows a bar for each closed ledger, the newest at the right edge, and a line at their average.
/// Time runs from left to right in every layout direction, as do the digits of its figures. A
/// label above the bars describes the ledger under the pointer or, with the keyboard, the focused
/// one. A click, Enter or Space chooses it. Screen readers see the bars as the items of a list.
class LedgerHistogram final : public LedgerCard
{
    Q_OBJECT

public:
    LedgerHistogram(const LedgerLook &look, QWidget *parent);

    /// Sets the ledgers, oldest first. If exactly one newer ledger was added, the bars move along
    /// to make room for it.
    void setLedgers(const QList<LedgerFeed::Ledger> &ledgers);
    const QList<LedgerFeed::Ledger> &ledgers() const { return m_ledgers; }

    /// The bar's column, over the whole height of the chart.
    QRect column(qsizetype position) const;

    /// The position of the bar with the keyboard focus; -1 if there is none.
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
    /// The area of the pressed bar at the time of the press.
    QRect m_pressedTarget;
    /// The position that has or last had the keyboard focus; -1 before there was one.
    qsizetype m_current = -1;
    /// The position of the pointer while it is over this widget.
    std::optional<QPoint> m_pointer;
    FigureText m_labelText;

    /// The animation from the previous bars, at 0, to the current ones, at 1.
    QVariantAnimation m_move;
    double m_largestBefore = 0;
};

} // namespace tidewick
