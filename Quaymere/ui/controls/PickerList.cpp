// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "ui/controls/PickerList.h"

#include "ui/controls/ControlMetrics.h"
#include "ui/controls/ControlPaint.h"
#include "ui/controls/TextScale.h"

#include <QComboBox>
#include <QListView>
#include <QStyledItemDelegate>

namespace tidewick {

namespace {

/// Paints the entries.
class EntryDelegate final : public QStyledItemDelegate
{
public:
    explicit EntryDelegate(QComboBox *picker) : QStyledItemDelegate(picker), m_picker(picker) {}

    QSize sizeHint(const QStyleOptionViewItem &option, const QModelIndex &index) const override
    {
        const int text = option.fontMetrics.horizontalAdvance(index.data().toString());
        return {tickSpace(option) + text + scaled(option, ControlMetrics::controlPadding),
                std::max(scaled(option, ControlMetrics::controlHeight),
                         TextScale::lineHeight(option.font) + 4)};
    }

    void paint(QPainter *painter, const QStyleOptionViewItem &option,
               const QModelIndex &index) const override
    {
        const bool isUnderCursor = option.state.testFlag(QStyle::State_Selected);
        const QPalette &colors = m_picker->palette();
        painter->save();
        painter->setRenderHint(QPainter::Antialiasing);
        if (isUnderCursor) {
            const qreal radius = scaled(option, ControlMetrics::controlRadius) - 2;
            painter->setPen(Qt::NoPen);
            painter->setBrush(colors.highlight());
            painter->drawRoundedRect(QRectF(option.rect).adjusted(2, 1, -2, -1), radius, radius);
        }
        const QColor ink =
            colors.color(isUnderCursor ? QPalette::HighlightedText : QPalette::ButtonText);
        if (index.row() == m_picker->currentIndex())
            drawTick(*painter, option, ink);
        painter->setPen(ink);
        ControlPaint::line(*painter, option.rect, tickSpace(option), option.direction,
                           index.data().toString());
        painter->restore();
    }

private:
    static int scaled(const QStyleOptionViewItem &option, int measure)
    {
        return TextScale::scaled(option.font, measure);
    }

    static int tickSpace(const QStyleOptionViewItem &option)
    {
        return 2 * scaled(option, ControlMetrics::controlPadding);
    }

    static void drawTick(QPainter &painter, const QStyleOptionViewItem &option, const QColor &ink)
    {
        const QRect place(option.rect.topLeft(), QSize(tickSpace(option), option.rect.height()));
        const QPointF middle =
            QRectF(QStyle::visualRect(option.direction, option.rect, place)).center();
        const qreal size = scaled(option, ControlMetrics::signWidth);
        ControlPaint::arrow(painter, middle + QPointF(-size * 0.12, size * 0.4),
                            middle + QPointF(-size * 0.45, size * 0.05),
                            middle + QPointF(size * 0.5, -size * 0.4), ink, size * 0.19);
    }

    QComboBox *m_picker;
};

} // namespace

void makePickerList(QComboBox &picker)
{
    auto *list = new QListView(&picker);
    list->setFrameShape(QFrame::NoFrame);
    list->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    picker.setView(list);
    picker.setItemDelegate(new EntryDelegate(&picker));
    picker.setMaxVisibleItems(20);
}

} // namespace tidewick
