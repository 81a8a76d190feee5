// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "ui/ledger/TransactionDelegate.h"

#include "ui/ledger/LedgerDrawing.h"
#include "ui/ledger/TransactionCard.h"
#include "ui/ledger/TransactionList.h"
#include "ui/ledger/TypeColor.h"

#include <QPainter>
#include <QPainterPath>

namespace tidewick {

namespace {

constexpr int fillMargin = 8;
constexpr int fillRadius = 6;
constexpr float checkmarkOpacity = 0.85F;
constexpr float oldCheckmarkOpacity = 0.45F;
constexpr QColor checkmarkColor(61, 168, 92);

} // namespace

TransactionDelegate::TransactionDelegate(const LedgerLook &look, TransactionList *list)
    : QStyledItemDelegate(list), m_look(look), m_list(list)
{
}

QSize TransactionDelegate::sizeHint(const QStyleOptionViewItem &, const QModelIndex &) const
{
    return {1, m_look.metrics.txRow};
}

void TransactionDelegate::paint(QPainter *painter, const QStyleOptionViewItem &option,
                                const QModelIndex &index) const
{
    const Palette &colors = m_look.colors;
    const LedgerMetrics &metrics = m_look.metrics;
    const TransactionModel::Row &tx = m_list->row(index);

    const QRect row = rowRect(option);
    const QRectF fill = QRectF(row).adjusted(-fillMargin, 0, fillMargin, 0);
    painter->setRenderHint(QPainter::Antialiasing);
    if (index == m_list->hoveredRow()) {
        painter->setPen(Qt::NoPen);
        painter->setBrush(colors.accentSoft);
        painter->drawRoundedRect(fill, fillRadius, fillRadius);
    }
    if (index == m_list->shownCurrent()) {
        painter->setPen(QPen(colors.link, 1.5));
        painter->setBrush(Qt::NoBrush);
        painter->drawRoundedRect(fill.adjusted(1, 1, -1, -1), fillRadius, fillRadius);
    }
    const auto part = [&](int left, int right) {
        return QStyle::visualRect(option.direction, row,
                                  {left, row.top(), std::max(0, right - left), row.height()});
    };
    const QColor color = colorFor(tx.type);
    LedgerDrawing::mark(*painter, part(row.left(), row.left() + metrics.mark), metrics,
                        m_look.old ? LedgerDrawing::mixed(colors.surface, color, 0.5F) : color);
    painter->setRenderHint(QPainter::Antialiasing, false);

    const Qt::Alignment start = QStyle::visualAlignment(option.direction, Qt::AlignLeft);
    const int name = row.left() + metrics.mark + metrics.markGap;
    const int account =
        row.left() + metrics.nameColumn + std::max(0, row.width() - metrics.usualRow) * 2 / 3;
    const int accountEnd = account + metrics.accountColumn;
    LedgerDrawing::line(*painter, part(name, account - metrics.markGap), start, metrics.body,
                        m_look.old ? colors.ink3 : colors.ink, tx.type);
    LedgerDrawing::line(*painter, part(account, accountEnd), start, metrics.body,
                        m_look.old ? colors.ink3 : colors.ink2, tx.account);
    paintResult(*painter, part(accountEnd + metrics.markGap, row.right() + 1), option.direction,
                tx);
}

/// The row within the list. Rows stay in line when the scroll bar appears, which takes its space
/// from the viewport.
QRect TransactionDelegate::rowRect(const QStyleOptionViewItem &option) const
{
    const int margin = TransactionCard::rowMargin(m_look.metrics);
    return {margin - m_list->viewport()->x(), option.rect.top(), m_list->width() - 2 * margin,
            option.rect.height()};
}

void TransactionDelegate::paintResult(QPainter &painter, const QRect &room,
                                      Qt::LayoutDirection direction,
                                      const TransactionModel::Row &tx) const
{
    const Palette &colors = m_look.colors;
    if (tx.succeeded) {
        const QPixmap mark = checkmark(painter.device()->devicePixelRatio());
        const QSize size = mark.deviceIndependentSize().toSize();
        painter.drawPixmap(
            QStyle::alignedRect(direction, Qt::AlignRight | Qt::AlignVCenter, size, room), mark);
        return;
    }
    // The warm accent alone is too pale for small text on a light background.
    LedgerDrawing::line(
        painter, room, QStyle::visualAlignment(direction, Qt::AlignRight), m_look.metrics.code,
        m_look.old ? colors.ink3 : LedgerDrawing::mixed(colors.thread, colors.ink, 0.3F),
        tx.result);
}

/// Returns a disc with a tick cut out of it.
QPixmap TransactionDelegate::checkmark(double ratio) const
{
    if (!m_checkmark.isNull() && m_checkmark.devicePixelRatio() == ratio)
        return m_checkmark;
    const int side = m_look.metrics.mark * 3 / 2;
    QPixmap picture(QSize(side, side) * ratio);
    picture.setDevicePixelRatio(ratio);
    picture.fill(Qt::transparent);
    QPainter painter(&picture);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setOpacity(m_look.old ? oldCheckmarkOpacity : checkmarkOpacity);
    painter.setPen(Qt::NoPen);
    painter.setBrush(checkmarkColor);
    painter.drawEllipse(QRectF(0, 0, side, side));
    QPainterPath tick;
    tick.moveTo(side * 0.29, side * 0.53);
    tick.lineTo(side * 0.44, side * 0.67);
    tick.lineTo(side * 0.71, side * 0.36);
    painter.setCompositionMode(QPainter::CompositionMode_DestinationOut);
    painter.setOpacity(1);
    painter.setBrush(Qt::NoBrush);
    painter.setPen(QPen(Qt::black, side * 0.11, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    painter.drawPath(tick);
    return m_checkmark = picture;
}

} // namespace tidewick
