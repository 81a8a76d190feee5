// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QAccessibleWidget>

#include <map>

namespace tidewick {

class DrawnList;

/// What a drawn item stands for: a text, and how many items before it have the same.
using DrawnName = std::pair<QString, qsizetype>;

/// An item that a widget draws itself, as screen readers see it: a line of a list. It stands for
/// one text. When the widget no longer draws that, the item is invalid.
class DrawnItem : public QAccessibleInterface
{
public:
    /// The list owns the item.
    DrawnItem(const DrawnList &list, DrawnName name) : m_list(list), m_name(std::move(name)) {}

    bool isValid() const override { return position() >= 0; }
    QObject *object() const override { return nullptr; }
    QWindow *window() const override;
    QAccessibleInterface *parent() const override;
    QAccessibleInterface *child(int) const override { return nullptr; }
    QAccessibleInterface *childAt(int, int) const override { return nullptr; }
    int childCount() const override { return 0; }
    int indexOfChild(const QAccessibleInterface *) const override { return -1; }
    QString text(QAccessible::Text kind) const override;
    void setText(QAccessible::Text, const QString &) override {}
    QRect rect() const override;
    QAccessible::Role role() const override { return QAccessible::ListItem; }
    QAccessible::State state() const override;

protected:
    /// The position in the list; -1 if the item is no longer there.
    int position() const;

private:
    const DrawnList &m_list;
    DrawnName m_name;
};

/// A widget as a list of items that it draws itself. Items are created on demand. An item follows
/// its text to another position, and a text that changes is another item: screen readers remember
/// the name of an item, and would have to be told each time that it is out of date.
class DrawnList : public QAccessibleWidget
{
public:
    explicit DrawnList(QWidget &widget) : QAccessibleWidget(&widget, QAccessible::List) {}
    DrawnList(const DrawnList &) = delete;
    DrawnList &operator=(const DrawnList &) = delete;
    ~DrawnList() override;

    /// The texts of the items, in the order in which they are drawn.
    virtual QStringList names() const = 0;
    /// The place of an item within the widget.
    virtual QRect itemRect(int position) const = 0;

    /// The position of an item; -1 if there is none.
    int position(const DrawnName &name) const;

    QWidget &drawing() const { return *widget(); }
    int childCount() const override { return int(names().size()); }
    QAccessibleInterface *child(int position) const override;
    QAccessibleInterface *childAt(int x, int y) const override;
    int indexOfChild(const QAccessibleInterface *wanted) const override;

protected:
    /// A new item. The caller owns it.
    virtual QAccessibleInterface *makeItem(const DrawnName &name) const;

private:
    void dropOldItems() const;

    /// Qt knows them by their ids.
    mutable std::map<DrawnName, QAccessible::Id> m_items;
};

} // namespace tidewick
