// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "ui/controls/Announcer.h"

#include <QAccessibleWidget>

namespace tidewick {

namespace {

/// With Qt 6.4, screen readers learn neither of alerts nor of announcements, only that something
/// has appeared. They read out what appears if it is a notification.
QAccessibleInterface *makeAccessible(const QString &, QObject *object)
{
    auto *announcer = qobject_cast<Announcer *>(object);
    return announcer ? new QAccessibleWidget(announcer, QAccessible::Notification) : nullptr;
}

} // namespace

Announcer::Announcer(QWidget *parent) : QWidget(parent)
{
    QAccessible::installFactory(makeAccessible);
    setFixedSize(0, 0);
    hide();
}

void Announcer::say(const QString &text)
{
    if (!QAccessible::isActive() || !window()->isActiveWindow())
        return;
    hide();
    setAccessibleName(text);
    show();
    // Otherwise it would appear again whenever the window does.
    QMetaObject::invokeMethod(this, &QWidget::hide, Qt::QueuedConnection);
}

} // namespace tidewick
