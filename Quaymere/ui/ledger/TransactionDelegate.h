// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include "ui/ledger/LedgerCard.h"
#include "ui/ledger/TransactionModel.h"

#include <QPixmap>
#include <QStyledItemDelegate>

namespace tidewick {

class TransactionList;

/// Paints a row of the transaction list.
class TransactionDelegate final : public QStyledItemDelegate
{
    Q_OBJECT

public:
    TransactionDelegate(const LedgerLook &look, TransactionList *list);

    void paint(QPainter *painter, const QStyleOptionViewItem &option,
               const QModelIndex &index) const override;
    QSize sizeHint(const QStyleOptionViewItem &option, const QModelIndex &index) const override;

    void lookChanged() { m_checkmark = {}; }

private:
    QRect rowRect(const QStyleOptionViewItem &option) const;
    void paintResult(QPainter &painter, const QRect &room, Qt::LayoutDirection direction,
                     const TransactionModel::Row &tx) const;
    QPixmap checkmark(double ratio) const;

    const LedgerLook &m_look;
    TransactionList *m_list;
    /// Drawn on demand.
    mutable QPixmap m_checkmark;
};

} // namespace tidewick
