// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QAccessibleWidget>

#include <map>

namespace tidewick {

/// An item that a widget draws itself, as screen readers see it: a line of a list.
class DrawnItem : public QAccessibleInterface
{
public:
    explicit DrawnItem(QWidget &widget) : m_widget(widget) {}

    QObject *object() const override { return nullptr; }
    QWindow *window() const override;
    QAccessibleInterface *parent() const override;
    QAccessibleInterface *child(int) const override { return nullptr; }
    QAccessibleInterface *childAt(int, int) const override { return nullptr; }
    int childCount() const override { return 0; }
    int indexOfChild(const QAccessibleInterface *) const override { return -1; }
    void setText(QAccessible::Text, const QString &) override {}
    QAccessible::Role role() const override { return QAccessible::ListItem; }
    QAccessible::State state() const override;

private:
    QWidget &m_widget;
};

/// A widget as a list of items that it draws itself. Items are created on demand and stay for their
/// positions, whatever is drawn there.
class DrawnList : public QAccessibleWidget
{
public:
    explicit DrawnList(QWidget &widget) : QAccessibleWidget(&widget, QAccessible::List) {}
    DrawnList(const DrawnList &) = delete;
    DrawnList &operator=(const DrawnList &) = delete;
    ~DrawnList() override;

    QAccessibleInterface *child(int position) const override;
    QAccessibleInterface *childAt(int x, int y) const override;
    int indexOfChild(const QAccessibleInterface *wanted) const override;

protected:
    /// A new item for this position. The caller owns it.
    virtual QAccessibleInterface *makeItem(int position) const = 0;

private:
    /// Qt knows them by their ids.
    mutable std::map<int, QAccessible::Id> m_items;
};

} // namespace tidewick
