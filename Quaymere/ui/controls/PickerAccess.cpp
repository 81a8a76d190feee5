// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "ui/controls/PickerAccess.h"

#include "ui/controls/Picker.h"

#include <QAbstractItemView>
#include <QAccessibleWidget>

namespace tidewick::PickerAccess {

namespace {

/// Qt presents a combo box without its text, which is all that screen readers look at if there is
/// no interface for its selection.
class PickerInterface final : public QAccessibleWidget, public QAccessibleTextInterface
{
public:
    explicit PickerInterface(Picker &picker)
        : QAccessibleWidget(&picker, QAccessible::ComboBox), m_picker(picker)
    {
    }

    int childCount() const override { return 1; }
    QAccessibleInterface *child(int index) const override
    {
        return index == 0 ? QAccessible::queryAccessibleInterface(m_picker.view()) : nullptr;
    }
    int indexOfChild(const QAccessibleInterface *wanted) const override
    {
        return wanted && wanted->object() == m_picker.view() ? 0 : -1;
    }

    QString text(QAccessible::Text kind) const override
    {
        return kind == QAccessible::Value ? m_picker.currentText() : QAccessibleWidget::text(kind);
    }

    QAccessible::State state() const override
    {
        QAccessible::State state = QAccessibleWidget::state();
        const bool isOpen = m_picker.view()->isVisible();
        state.expandable = true;
        state.expanded = isOpen;
        state.collapsed = !isOpen;
        return state;
    }

    void *interface_cast(QAccessible::InterfaceType type) override
    {
        return type == QAccessible::TextInterface ? static_cast<QAccessibleTextInterface *>(this)
                                                  : QAccessibleWidget::interface_cast(type);
    }

    QStringList actionNames() const override
    {
        return QStringList{showMenuAction()} + QAccessibleWidget::actionNames();
    }
    void doAction(const QString &action) override
    {
        if (action != showMenuAction())
            QAccessibleWidget::doAction(action);
        else if (m_picker.view()->isVisible())
            m_picker.hidePopup();
        else if (m_picker.isEnabled())
            m_picker.showPopup();
    }

    // The text can be read, but neither selected nor changed.
    QString text(int start, int end) const override
    {
        const QString whole = m_picker.currentText();
        return whole.mid(start, end < 0 ? -1 : end - start);
    }
    int characterCount() const override { return int(m_picker.currentText().size()); }
    QRect characterRect(int) const override { return rect(); }
    int offsetAtPoint(const QPoint &) const override { return -1; }
    QString attributes(int, int *start, int *end) const override
    {
        *start = 0;
        *end = characterCount();
        return {};
    }
    int cursorPosition() const override { return 0; }
    void setCursorPosition(int) override {}
    int selectionCount() const override { return 0; }
    void selection(int, int *start, int *end) const override { *start = *end = 0; }
    void addSelection(int, int) override {}
    void removeSelection(int) override {}
    void setSelection(int, int, int) override {}
    void scrollToSubstring(int, int) override {}

private:
    Picker &m_picker;
};

QAccessibleInterface *make(const QString &, QObject *object)
{
    auto *picker = qobject_cast<Picker *>(object);
    return picker ? new PickerInterface(*picker) : nullptr;
}

} // namespace

void install()
{
    QAccessible::installFactory(make);
}

void tellEntry(Picker &picker)
{
    if (!QAccessible::isActive() || picker.currentIndex() < 0)
        return;
    QAbstractItemView *list = picker.view();
    // A closed list has kept the entry that was picked in it last.
    list->setCurrentIndex(picker.model()->index(picker.currentIndex(), picker.modelColumn()));
    QAccessibleEvent event(list, QAccessible::Focus);
    event.setChild(picker.currentIndex());
    QAccessible::updateAccessibility(&event);
}

void tellListState(Picker &picker)
{
    QAccessible::State changed;
    changed.expanded = true;
    changed.collapsed = true;
    QAccessibleStateChangeEvent event(&picker, changed);
    QAccessible::updateAccessibility(&event);
}

} // namespace tidewick::PickerAccess
