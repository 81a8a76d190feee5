// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "ui/ledger/TransactionCard.h"

#include "ui/ledger/LedgerTexts.h"

#include <QPaintEvent>
#include <QPainter>

namespace tidewick {

TransactionCard::TransactionCard(const LedgerLook &look, QWidget *parent)
    : LedgerCard(look, QStringLiteral("Latest transactions"), parent),
      m_list(new TransactionList(look, this))
{
    m_list->hide();
    connect(m_list, &TransactionList::chosen, this, &TransactionCard::chosen);
}

int TransactionCard::rowMargin(const LedgerMetrics &metrics)
{
    return metrics.cardSide - metrics.listMargin;
}

void TransactionCard::setTransactions(const QList<LedgerFeed::Tx> &txs, qsizetype arrived)
{
    m_list->setVisible(!txs.isEmpty());
    m_list->setTransactions(txs, arrived);
}

void TransactionCard::lookChanged()
{
    LedgerCard::lookChanged();
    m_list->lookChanged();
    arrange();
}

void TransactionCard::resizeEvent(QResizeEvent *)
{
    arrange();
}

void TransactionCard::arrange()
{
    const int margin = metrics().listMargin;
    QRect place = rect().adjusted(margin, 0, -margin, -margin);
    place.setTop(content().top());
    m_list->setGeometry(place);
}

void TransactionCard::paintEvent(QPaintEvent *event)
{
    QPainter painter(this);
    paintCard(painter, event->rect());
    if (m_list->isVisibleTo(this))
        return;
    QRect line = content();
    line.setHeight(metrics().typeRow);
    paintLine(painter, line, Qt::AlignLeft, metrics().caption, colors().ink3,
              LedgerTexts::waiting());
}

} // namespace tidewick
