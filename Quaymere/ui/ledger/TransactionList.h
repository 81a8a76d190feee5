// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include "ui/ledger/LedgerCard.h"
#include "ui/ledger/TransactionModel.h"

#include <QListView>
#include <QVariantAnimation>

namespace tidewick {

class TransactionDelegate;

/// The rows of the latest transactions. A click or Enter chooses one.
///
/// New ones come in at the top, and the list moves down for them. Where the user has scrolled down,
/// points at a row or has the keyboard on one, the rows in sight stay where they are instead; a
/// list that nobody scrolled goes back to the top afterwards.
class TransactionList final : public QListView
{
    Q_OBJECT

public:
    /// The look outlives the list.
    TransactionList(const LedgerLook &look, QWidget *parent);

    /// The list, of which so many at the front are new.
    void setTransactions(const QList<LedgerFeed::Tx> &txs, qsizetype arrived);

    void lookChanged();

    const TransactionModel::Row &row(const QModelIndex &index) const { return m_model->row(index); }

    /// The row under the pointer.
    QModelIndex hoveredRow() const { return m_hovered; }

    /// The row that the keyboard is at, while that is to be seen.
    QModelIndex shownCurrent() const;

signals:
    void chosen(const QString &hash);

protected:
    bool viewportEvent(QEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;
    void hideEvent(QHideEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void focusInEvent(QFocusEvent *event) override;
    void focusOutEvent(QFocusEvent *event) override;

private:
    bool isHeld() const;
    void scrolledByHand();
    void moveToTop(int from);
    void endMove();
    void hoverAnew();

    const LedgerLook &m_look;
    TransactionModel *m_model;
    TransactionDelegate *m_delegate;
    /// Where the pointer is, if it is here.
    std::optional<QPoint> m_pointer;
    QPersistentModelIndex m_hovered;
    /// The keyboard brought the focus, or moved it since.
    bool m_usesKeyboard = false;
    /// Nobody has scrolled away from the newest.
    bool m_followsNewest = true;
    QVariantAnimation m_move;
};

} // namespace tidewick
