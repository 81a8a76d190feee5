// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "ui/ledger/DrawnList.h"

#include <QWidget>

namespace tidewick {

QWindow *DrawnItem::window() const
{
    return m_widget.window()->windowHandle();
}

QAccessibleInterface *DrawnItem::parent() const
{
    return QAccessible::queryAccessibleInterface(&m_widget);
}

QAccessible::State DrawnItem::state() const
{
    QAccessible::State state;
    state.invisible = !m_widget.isVisible();
    return state;
}

DrawnList::~DrawnList()
{
    for (const auto &[position, id] : m_items)
        QAccessible::deleteAccessibleInterface(id);
}

QAccessibleInterface *DrawnList::child(int position) const
{
    if (position < 0 || position >= childCount())
        return nullptr;
    auto item = m_items.find(position);
    if (item == m_items.end()) {
        // Qt owns it from here. NOLINTNEXTLINE(clang-analyzer-cplusplus.NewDeleteLeaks)
        const QAccessible::Id id = QAccessible::registerAccessibleInterface(makeItem(position));
        item = m_items.emplace(position, id).first;
    }
    return QAccessible::accessibleInterface(item->second);
}

QAccessibleInterface *DrawnList::childAt(int x, int y) const
{
    for (int i = 0; i < childCount(); ++i) {
        if (child(i)->rect().contains(x, y))
            return child(i);
    }
    return nullptr;
}

int DrawnList::indexOfChild(const QAccessibleInterface *wanted) const
{
    for (const auto &[position, id] : m_items) {
        if (QAccessible::accessibleInterface(id) == wanted)
            return position;
    }
    return -1;
}

} // namespace tidewick
