// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "ui/panel/PanelButton.h"
#include "ui/panel/PanelRows.h"

#include <QKeyEvent>

// The keyboard focus in the panel's rows.

namespace tidewick {

bool PanelRows::focusNextPrevChild(bool next)
{
    const int step = next ? 1 : -1;
    return focus(focusedPlace().value_or(next ? -1 : menuPlaceCount), step);
}

void PanelRows::keyPressEvent(QKeyEvent *event)
{
    switch (event->key()) {
    case Qt::Key_Up:
        focusNextPrevChild(false);
        break;
    case Qt::Key_Down:
        focusNextPrevChild(true);
        break;
    case Qt::Key_Home:
        focus(-1, 1);
        break;
    case Qt::Key_End:
        focus(menuPlaceCount, -1);
        break;
    default:
        QWidget::keyPressEvent(event);
    }
}

void PanelRows::focusOutEvent(QFocusEvent *event)
{
    // The focus stays in place while another window is active.
    if (event->reason() != Qt::ActiveWindowFocusReason && event->reason() != Qt::PopupFocusReason)
        hold({});
    QWidget::focusOutEvent(event);
}

/// Returns the position of the focused widget, even in an inactive window.
PanelRows::Place PanelRows::focusedPlace() const
{
    const QWidget *focused = window()->focusWidget();
    for (int place = 0; focused && focused != this && place < menuPlaceCount; ++place) {
        if (m_slots[size_t(place)].shown() == focused)
            return place;
    }
    return m_held;
}

PanelRows::Place PanelRows::focusedCommand() const
{
    const Place place = focusedPlace();
    return place && m_slots[size_t(*place)].button == m_slots[size_t(*place)].shown() ? place
                                                                                      : Place();
}

bool PanelRows::canFocus(int place) const
{
    const std::optional<MenuRow> &row = m_slots[size_t(place)].row;
    return row && row->kind == MenuRow::Kind::Command && row->enabled;
}

void PanelRows::hold(Place place)
{
    if (place == m_held)
        return;
    for (const Place &held : {m_held, place}) {
        if (held)
            m_slots[size_t(*held)].button->setHeld(held == place);
    }
    m_held = place;
}

/// Restores the focus after the rows have changed. The position that was focused before is focused
/// again, or holds the focus while it is disabled. If it is gone, the focus goes to the nearest
/// command below it, or else above it.
void PanelRows::restoreFocus(Place place)
{
    const Slot &slot = m_slots[size_t(*place)];
    if (slot.shown() && slot.shown() == window()->focusWidget())
        return;
    if (slot.row && slot.row->kind == MenuRow::Kind::Command && !slot.row->enabled)
        return hold(place);
    hold({});
    for (int below = *place; below < menuPlaceCount; ++below) {
        if (canFocus(below))
            return m_slots[size_t(below)].button->setFocus(Qt::OtherFocusReason);
    }
    focus(*place, -1);
}

/// Moves the focus to the next enabled command, wrapping around at the ends. Returns false if there
/// is none.
bool PanelRows::focus(int from, int step)
{
    int place = from;
    for (int tries = 0; tries <= menuPlaceCount; ++tries) {
        place += step;
        if (place < 0 || place >= menuPlaceCount)
            place = step > 0 ? 0 : menuPlaceCount - 1;
        if (!canFocus(place))
            continue;
        PanelButton *button = m_slots[size_t(place)].button;
        button->setFocus(step > 0 ? Qt::TabFocusReason : Qt::BacktabFocusReason);
        emit focusMoved(button);
        return true;
    }
    return false;
}

} // namespace tidewick
