// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "ui/controls/PushButton.h"

#include "ui/controls/ControlMetrics.h"
#include "ui/controls/ControlPaint.h"
#include "ui/controls/TextScale.h"

#include <QKeyEvent>

namespace tidewick {

PushButton::PushButton(const QString &text, QWidget *parent) : QAbstractButton(parent)
{
    setText(text);
    setFocusPolicy(Qt::StrongFocus);
    setAttribute(Qt::WA_Hover);
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
}

QSize PushButton::sizeHint() const
{
    const auto points = [this](int measure) { return TextScale::scaled(font(), measure); };
    return {fontMetrics().horizontalAdvance(text()) + 2 * points(ControlMetrics::controlPadding)
                + 2,
            std::max(points(ControlMetrics::controlHeight), TextScale::lineHeight(font()) + 4)};
}

void PushButton::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    ControlPaint::control(painter, *this, isDown());
    painter.setPen(palette().color(QPalette::ButtonText));
    painter.drawText(rect(), Qt::AlignCenter | Qt::TextSingleLine, text());
}

void PushButton::keyPressEvent(QKeyEvent *event)
{
    const bool isEnter = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
    if (!isEnter)
        return QAbstractButton::keyPressEvent(event);
    // A key held down must not click repeatedly.
    if (!event->isAutoRepeat())
        click();
}

void PushButton::changeEvent(QEvent *event)
{
    if (event->type() == QEvent::FontChange)
        updateGeometry();
    QAbstractButton::changeEvent(event);
}

} // namespace tidewick
