// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "ui/ledger/DrawnList.h"

#include <QWidget>

namespace tidewick {

QWindow *DrawnItem::window() const
{
    return m_list.window();
}

QAccessibleInterface *DrawnItem::parent() const
{
    return QAccessible::queryAccessibleInterface(m_list.object());
}

QString DrawnItem::text(QAccessible::Text kind) const
{
    return kind == QAccessible::Name && isValid() ? m_name.first : QString();
}

QRect DrawnItem::rect() const
{
    const int place = position();
    if (place < 0)
        return {};
    const QRect rect = m_list.itemRect(place);
    return {m_list.drawing().mapToGlobal(rect.topLeft()), rect.size()};
}

QAccessible::State DrawnItem::state() const
{
    QAccessible::State state;
    state.invisible = !m_list.drawing().isVisible();
    return state;
}

int DrawnItem::position() const
{
    return m_list.position(m_name);
}

DrawnList::~DrawnList()
{
    for (const auto &[name, id] : m_items)
        QAccessible::deleteAccessibleInterface(id);
}

int DrawnList::position(const DrawnName &name) const
{
    const QStringList names = this->names();
    qsizetype place = names.indexOf(name.first);
    for (qsizetype before = 0; before < name.second && place >= 0; ++before)
        place = names.indexOf(name.first, place + 1);
    return int(place);
}

QAccessibleInterface *DrawnList::child(int position) const
{
    const QStringList names = this->names();
    if (position < 0 || position >= names.size())
        return nullptr;
    const QString &text = names.at(position);
    const DrawnName name(text, names.first(position).count(text));
    auto item = m_items.find(name);
    if (item == m_items.end()) {
        dropOldItems();
        // Qt owns it from here. NOLINTNEXTLINE(clang-analyzer-cplusplus.NewDeleteLeaks)
        const QAccessible::Id id = QAccessible::registerAccessibleInterface(makeItem(name));
        item = m_items.emplace(name, id).first;
    }
    return QAccessible::accessibleInterface(item->second);
}

QAccessibleInterface *DrawnList::childAt(int x, int y) const
{
    const QPoint point = drawing().mapFromGlobal(QPoint(x, y));
    for (int i = 0; i < childCount(); ++i) {
        if (itemRect(i).contains(point))
            return child(i);
    }
    return nullptr;
}

int DrawnList::indexOfChild(const QAccessibleInterface *wanted) const
{
    for (const auto &[name, id] : m_items) {
        if (QAccessible::accessibleInterface(id) == wanted)
            return position(name);
    }
    return -1;
}

QAccessibleInterface *DrawnList::makeItem(const DrawnName &name) const
{
    return new DrawnItem(*this, name);
}

void DrawnList::dropOldItems() const
{
    for (auto item = m_items.begin(); item != m_items.end();) {
        if (position(item->first) >= 0) {
            ++item;
            continue;
        }
        QAccessible::deleteAccessibleInterface(item->second);
        item = m_items.erase(item);
    }
}

} // namespace tidewick
