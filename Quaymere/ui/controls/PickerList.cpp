// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "ui/controls/PickerList.h"

#include "ui/controls/ControlMetrics.h"
#include "ui/controls/ControlPaint.h"
#include "ui/controls/PopupStyle.h"
#include "ui/controls/Popups.h"
#include "ui/controls/TextScale.h"

#include <QComboBox>
#include <QListView>
#include <QStyledItemDelegate>

namespace tidewick {

namespace {

// In points for text of 10 points.
constexpr int rowHeight = 31;
/// From the list's edge to the end of the tick, and from there to the text.
constexpr int tickSpace = 26;
constexpr int tickToText = 8;
constexpr int tickWidth = 10;
constexpr int textEnd = 20;

int textStart(const QFont &font)
{
    return TextScale::scaled(font, tickSpace) + TextScale::scaled(font, tickToText);
}

int heightOfRow(const QFont &font)
{
    return std::max(TextScale::scaled(font, rowHeight), TextScale::lineHeight(font) + 4);
}

/// Places the list so that its current entry covers the same text in the picker, as far as the
/// screen has room.
class ListPlace final : public PopupStyle
{
public:
    using PopupStyle::PopupStyle;

    QRect subControlRect(ComplexControl control, const QStyleOptionComplex *option, SubControl part,
                         const QWidget *widget) const override
    {
        if (control != CC_ComboBox || part != SC_ComboBoxListBoxPopup)
            return PopupStyle::subControlRect(control, option, part, widget);
        const QFont &font = widget->font();
        const QRect picker = option->rect;
        const int before =
            textStart(font) - TextScale::scaled(font, ControlMetrics::controlPadding);
        const int above = inset(font) + (heightOfRow(font) - picker.height()) / 2;
        return visualRect(option->direction, picker, picker.adjusted(-before, -above, 0, 0));
    }
};

/// Paints the entries.
class EntryDelegate final : public QStyledItemDelegate
{
public:
    explicit EntryDelegate(QComboBox *picker) : QStyledItemDelegate(picker), m_picker(picker) {}

    QSize sizeHint(const QStyleOptionViewItem &option, const QModelIndex &index) const override
    {
        const int text = option.fontMetrics.horizontalAdvance(index.data().toString());
        return {textStart(option.font) + text + scaled(option, textEnd), heightOfRow(option.font)};
    }

    void paint(QPainter *painter, const QStyleOptionViewItem &option,
               const QModelIndex &index) const override
    {
        const QPalette &colors = m_picker->palette();
        const int inset = PopupStyle::inset(option.font);
        painter->save();
        if (option.state.testFlag(QStyle::State_Selected))
            PopupStyle::paintCurrentRow(*painter, option.rect.adjusted(inset, 0, -inset, 0),
                                        option.font, colors);
        if (index.row() == m_picker->currentIndex())
            drawTick(*painter, option, colors.color(QPalette::Link));
        painter->setPen(colors.color(QPalette::ButtonText));
        ControlPaint::line(*painter, option.rect, textStart(option.font), option.direction,
                           index.data().toString());
        painter->restore();
    }

private:
    static int scaled(const QStyleOptionViewItem &option, int measure)
    {
        return TextScale::scaled(option.font, measure);
    }

    static void drawTick(QPainter &painter, const QStyleOptionViewItem &option, const QColor &color)
    {
        const int space = scaled(option, tickSpace);
        const int size = scaled(option, tickWidth);
        const QRect place(option.rect.left() + space - size, option.rect.top(), size,
                          option.rect.height());
        const QPointF middle =
            QRectF(QStyle::visualRect(option.direction, option.rect, place)).center();
        ControlPaint::arrow(painter, middle + QPointF(-size * 0.15, size * 0.35),
                            middle + QPointF(-size * 0.45, size * 0.05),
                            middle + QPointF(size * 0.45, -size * 0.35), color, size * 0.14);
    }

    QComboBox *m_picker;
};

} // namespace

void makePickerList(QComboBox &picker)
{
    auto *style = new ListPlace(&picker);
    style->setParent(&picker);
    picker.setStyle(style);
    auto *list = new QListView(&picker);
    list->setFrameShape(QFrame::NoFrame);
    list->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    list->viewport()->setAutoFillBackground(false);
    picker.setView(list);
    picker.setItemDelegate(new EntryDelegate(&picker));
    picker.setMaxVisibleItems(20);
    QWidget *popup = list->parentWidget();
    Popups::dress(*popup, &picker);
    // What scrolls a list that is longer than the screen.
    for (auto *part : popup->findChildren<QWidget *>(Qt::FindDirectChildrenOnly))
        part->setStyle(popup->style());
}

} // namespace tidewick
