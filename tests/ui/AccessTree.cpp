// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "ui/AccessTree.h"

#include "ui/SpeechLog.h"

#include <QAccessible>
#include <QMetaEnum>
#include <QWidget>
#include <QtTest>

namespace tidewick {

namespace {

QString quoted(const QString &text)
{
    QString line = text;
    line.replace(u'\n', QLatin1String("\\n"));
    return u'"' + line + u'"';
}

QString labelOf(const QAccessibleInterface &object)
{
    const auto labels = object.relations(QAccessible::Label);
    return labels.isEmpty() ? QString() : labels.constFirst().first->text(QAccessible::Name);
}

QString states(const QAccessible::State &state)
{
    QStringList names;
    const auto add = [&names](bool isSet, const char *name) {
        if (isSet)
            names += QLatin1String(name);
    };
    add(state.disabled, "disabled");
    add(state.focusable, "focusable");
    add(state.focused, "focused");
    add(state.selected, "selected");
    add(state.expanded, "expanded");
    add(state.collapsed, "collapsed");
    add(state.readOnly, "read-only");
    add(state.multiLine, "multi-line");
    return names.join(u' ');
}

QString description(const QAccessibleInterface &object)
{
    QString line =
        QLatin1String(QMetaEnum::fromType<QAccessible::Role>().valueToKey(int(object.role())));
    const QString name = object.text(QAccessible::Name);
    if (!name.isEmpty())
        line += u' ' + quoted(name);
    const auto add = [&line](const char *what, const QString &text) {
        if (!text.isEmpty())
            line += QLatin1String(what) + quoted(text);
    };
    add(" value ", object.text(QAccessible::Value));
    add(" labelled ", labelOf(object));
    add(" description ", object.text(QAccessible::Description));
    const QString marks = states(object.state());
    return marks.isEmpty() ? line : line + QLatin1String(" [") + marks + u']';
}

/// An entry of a picker is there even while its list is closed.
bool isShown(const QAccessibleInterface &object)
{
    const auto *widget = qobject_cast<const QWidget *>(object.object());
    const QAccessibleInterface *parent = object.parent();
    return !widget || widget->isVisible() || (parent && parent->role() == QAccessible::ComboBox);
}

/// Holds others together, and says nothing itself.
bool isFrame(const QAccessibleInterface &object)
{
    return object.role() == QAccessible::Client && object.text(QAccessible::Name).isEmpty()
           && object.text(QAccessible::Description).isEmpty();
}

void addBranch(QString &tree, const QAccessibleInterface &object, qsizetype depth)
{
    if (!isShown(object) || object.role() == QAccessible::ScrollBar)
        return;
    const bool isLeftOut = isFrame(object);
    if (!isLeftOut)
        tree += QString(2 * depth, u' ') + description(object) + u'\n';
    for (int i = 0; i < object.childCount(); ++i) {
        if (const auto *child = object.child(i))
            addBranch(tree, *child, isLeftOut ? depth : depth + 1);
    }
}

/// The object with the focus, which may be an item of the widget with the focus.
QString focused(const QWidget &window)
{
    QWidget *widget = window.focusWidget();
    if (!widget)
        return QStringLiteral("nothing");
    const auto *object = QAccessible::queryAccessibleInterface(widget);
    const auto *item = object->focusChild();
    const bool isItem = item && item != object && item->role() == QAccessible::ListItem;
    return spokenName(isItem ? *item : *object);
}

} // namespace

QString accessTree(QWidget &window)
{
    QString tree;
    addBranch(tree, *QAccessible::queryAccessibleInterface(&window), 0);
    tree +=
        QLatin1String("\nThe focus at first: ") + focused(window) + QLatin1String("\nAfter Tab:\n");
    QList<QWidget *> visited;
    for (;;) {
        QTest::keyClick(window.windowHandle(), Qt::Key_Tab);
        QWidget *widget = window.focusWidget();
        if (!widget || visited.contains(widget))
            break;
        visited += widget;
        tree += QLatin1String("  ") + focused(window) + u'\n';
    }
    return tree;
}

} // namespace tidewick
