// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "ui/controls/PushButton.h"

#include "ui/controls/ControlMetrics.h"
#include "ui/controls/ControlPaint.h"
#include "ui/controls/TextScale.h"

#include <QEvent>

namespace tidewick {

PushButton::PushButton(const QString &text, QWidget *parent) : Button(parent)
{
    setText(text);
    setFocusPolicy(Qt::StrongFocus);
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
    painter.setPen(palette().color(foregroundRole()));
    ControlPaint::centered(painter, rect(), text());
}

void PushButton::changeEvent(QEvent *event)
{
    if (event->type() == QEvent::FontChange)
        updateGeometry();
    Button::changeEvent(event);
}

} // namespace tidewick
