// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "ui/controls/Button.h"

#include <QKeyEvent>

namespace tidewick {

Button::Button(QWidget *parent) : QAbstractButton(parent)
{
    setAttribute(Qt::WA_Hover);
}

void Button::keyPressEvent(QKeyEvent *event)
{
    const bool isEnter = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
    if (!isEnter)
        return QAbstractButton::keyPressEvent(event);
    if (!event->isAutoRepeat())
        click();
}

} // namespace tidewick
