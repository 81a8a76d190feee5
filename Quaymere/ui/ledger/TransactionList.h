// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include "ui/ledger/LedgerCard.h"
#include "ui/ledger/TransactionModel.h"

#include <QListView>
#include <QVariantAnimation>

namespace tidewick {

class TransactionDelegate;

/// The rows of the latest transactions. A click, Enter or Space chooses one.
///
/// New rows arrive at the top, and the list moves down for them. If the user has scrolled down,
/// points at a row or has the keyboard focus on one, the visible rows stay in place instead. A list
/// that was not scrolled returns to the top afterwards. Rows that would push out the one with the
/// keyboard focus wait until it has moved on: Enter must open the row that a screen reader has
/// read.
class TransactionList final : public QListView
{
    Q_OBJECT

public:
    /// The look must outlive the list.
    TransactionList(const LedgerLook &look, QWidget *parent);

    /// Shows these transactions, of which the first `arrived` are new.
    void setTransactions(const QList<LedgerFeed::Tx> &txs, qsizetype arrived);

    void lookChanged();

    const TransactionModel::Row &row(const QModelIndex &index) const { return m_model->row(index); }

    /// The row under the pointer.
    QModelIndex hoveredRow() const { return m_hovered; }

    /// The current row, if the list has the focus and the keyboard is in use.
    QModelIndex shownCurrent() const;

signals:
    void chosen(const QString &hash);

protected:
    bool viewportEvent(QEvent *event) override;
    void currentChanged(const QModelIndex &current, const QModelIndex &previous) override;
    void resizeEvent(QResizeEvent *event) override;
    void hideEvent(QHideEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void focusInEvent(QFocusEvent *event) override;
    void focusOutEvent(QFocusEvent *event) override;

private:
    void showWaiting();
    bool isHeld() const;
    void scrolledByHand();
    void moveToTop(int from);
    void endMove();
    void hoverAnew();
    void tellCurrent();

    const LedgerLook &m_look;
    TransactionModel *m_model;
    TransactionDelegate *m_delegate;
    /// The position of the pointer while it is over the list.
    std::optional<QPoint> m_pointer;
    QPersistentModelIndex m_hovered;
    /// Whether the keyboard brought the focus or has moved it since.
    bool m_usesKeyboard = false;
    /// Whether the feed is changing the rows, rather than the user.
    bool m_isChanging = false;
    /// The transactions to show when the focus moves on, and how many of them have not been shown.
    QList<LedgerFeed::Tx> m_waiting;
    qsizetype m_unseen = 0;
    /// Whether the user has not scrolled away from the newest row.
    bool m_followsNewest = true;
    QVariantAnimation m_move;
};

} // namespace tidewick
