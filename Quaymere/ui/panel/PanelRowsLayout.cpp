// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "ui/controls/TextScale.h"
#include "ui/panel/PanelIcon.h"
#include "ui/panel/PanelLabel.h"
#include "ui/panel/PanelLine.h"
#include "ui/panel/PanelMetrics.h"
#include "ui/panel/PanelRows.h"

#include <QEvent>
#include <QStyle>

// The layout of the panel's rows. It is done by hand, as soon as a row has changed: a QLayout would
// do it one event later, after the row has been visible in the wrong position.

namespace tidewick {

int PanelRows::heightForWidth(int width) const
{
    return arrange(width, false);
}

void PanelRows::fit(int width)
{
    resize(width, arrange(width, true));
}

void PanelRows::changeEvent(QEvent *event)
{
    if (event->type() == QEvent::FontChange)
        setFonts();
    QWidget::changeEvent(event);
}

void PanelRows::setFonts()
{
    if (PanelLabel *title = slot(MenuPlace::Title).label) {
        QFont font = TextScale::resized(this->font(), 1.2);
        font.setBold(true);
        title->setFont(font);
    }
    const QFont small = TextScale::resized(font(), 0.9);
    if (PanelLabel *detail = slot(MenuPlace::Detail).label)
        detail->setFont(small);
    m_hint->setFont(small);
}

int PanelRows::arrange(int width, bool place) const
{
    const auto points = [this](int measure) { return TextScale::scaled(font(), measure); };
    int y = arrangeHeader(width, place);
    const auto add = [&](QWidget *row, int margin, int gap) {
        const int left = points(margin);
        const int height = row->heightForWidth(width - 2 * left);
        y += points(gap);
        if (place)
            row->setGeometry(left, y, width - 2 * left, height);
        y += height + points(gap);
    };
    for (const Slot &slot : m_slots) {
        if (!slot.row || slot.row->place <= MenuPlace::Detail)
            continue;
        if (slot.row->place == MenuPlace::Advice)
            add(slot.shown(), PanelMetrics::textMargin, PanelMetrics::adviceGap);
        else
            add(slot.shown(), PanelMetrics::fillMargin, 0);
    }
    if (!m_hintText.isEmpty()) {
        add(m_hintLine, PanelMetrics::fillMargin, 0);
        add(m_hint, PanelMetrics::fillMargin, 0);
    }
    return y + points(PanelMetrics::bottom);
}

/// Arranges the icon beside title and detail. The header is as high without a detail as with a
/// one-line detail, so that the commands below stay in place when a detail comes and goes.
int PanelRows::arrangeHeader(int width, bool place) const
{
    const auto points = [this](int measure) { return TextScale::scaled(font(), measure); };
    const auto move = [&](QWidget *widget, const QRect &where) {
        widget->setGeometry(QStyle::visualRect(layoutDirection(), {0, 0, width, 1}, where));
    };
    QWidget *title = slot(MenuPlace::Title).shown();
    QWidget *detail = slot(MenuPlace::Detail).shown();
    const int margin = points(PanelMetrics::textMargin);
    const int top = points(PanelMetrics::top);

    int left = margin;
    if (const int drawn = m_icon->drawnWidth()) {
        const bool bare = drawn <= points(PanelMetrics::markWidth);
        left += points(PanelMetrics::iconGap)
                + points(bare ? PanelMetrics::markWidth : PanelMetrics::iconWidth);
    }
    const int room = std::max(1, width - left - margin);
    const int line = TextScale::lineHeight(TextScale::resized(font(), 0.9));
    const int titleHeight = title ? title->heightForWidth(room) : 0;
    const int detailHeight = detail ? detail->heightForWidth(room) : 0;
    const int spare = detail ? 0 : line;
    if (place) {
        const int iconHeight = points(PanelMetrics::iconHeight);
        move(m_icon, {margin, top + (titleHeight + line - iconHeight) / 2,
                      points(PanelMetrics::iconWidth), iconHeight});
        if (title)
            move(title, {left, top + spare / 2, room, titleHeight});
        if (detail)
            move(detail, {left, top + titleHeight, room, detailHeight});
    }
    return top + titleHeight + detailHeight + spare + points(PanelMetrics::headerBottom);
}

} // namespace tidewick
