// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "ui/FormButton.h"

#include "ui/FormMetrics.h"
#include "ui/FormPaint.h"
#include "ui/TextScale.h"

#include <QKeyEvent>

namespace tidewick {

FormButton::FormButton(const QString &text, QWidget *parent) : QAbstractButton(parent)
{
    setText(text);
    setFocusPolicy(Qt::StrongFocus);
    setAttribute(Qt::WA_Hover);
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
}

QSize FormButton::sizeHint() const
{
    const auto points = [this](int measure) { return TextScale::scaled(font(), measure); };
    return {fontMetrics().horizontalAdvance(text()) + 2 * points(FormMetrics::controlPadding) + 2,
            std::max(points(FormMetrics::controlHeight), TextScale::lineHeight(font()) + 4)};
}

void FormButton::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    FormPaint::control(painter, *this, isDown());
    painter.setPen(palette().color(QPalette::ButtonText));
    painter.drawText(rect(), Qt::AlignCenter | Qt::TextSingleLine, text());
}

void FormButton::keyPressEvent(QKeyEvent *event)
{
    const bool isEnter = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
    if (!isEnter)
        return QAbstractButton::keyPressEvent(event);
    // A key held down must not press again and again.
    if (!event->isAutoRepeat())
        click();
}

void FormButton::changeEvent(QEvent *event)
{
    if (event->type() == QEvent::FontChange)
        updateGeometry();
    QAbstractButton::changeEvent(event);
}

} // namespace tidewick
