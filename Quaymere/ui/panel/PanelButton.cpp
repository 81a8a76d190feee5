// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "ui/panel/PanelButton.h"

#include "ui/controls/ControlPaint.h"
#include "ui/controls/TextScale.h"
#include "ui/controls/ToolTip.h"
#include "ui/panel/PanelMetrics.h"

#include <QKeyEvent>
#include <QPainter>

namespace tidewick {

PanelButton::PanelButton(QWidget *parent)
    : Button(parent),
      m_text(PanelMetrics::textMargin - PanelMetrics::fillMargin, PanelMetrics::commandPadding)
{
    setFocusPolicy(Qt::TabFocus);
    setCursor(Qt::PointingHandCursor);
    m_text.setFont(font());
}

void PanelButton::setWholeText(const QString &text)
{
    m_text.set(text);
    // Not as the button's text, in which an ampersand would mark a mnemonic.
    setAccessibleName(m_text.text());
    ToolTip::set(*this, m_text.cutText());
    update();
}

void PanelButton::setChoosable(bool choosable)
{
    if (choosable == isEnabled())
        return;
    setEnabled(choosable);
    setCursor(choosable ? Qt::PointingHandCursor : Qt::ArrowCursor);
}

void PanelButton::setHeld(bool held)
{
    if (held == m_held)
        return;
    m_held = held;
    update();
}

int PanelButton::heightForWidth(int width) const
{
    return m_text.height(width);
}

QSize PanelButton::sizeHint() const
{
    return {width(), heightForWidth(width())};
}

void PanelButton::paintEvent(QPaintEvent *)
{
    const QPalette colors = palette();
    const bool focused = m_held || hasFocus();
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const qreal radius = TextScale::scaled(font(), PanelMetrics::fillRadius);
    if (isEnabled() && (focused || underMouse())) {
        painter.setPen(Qt::NoPen);
        painter.setBrush(colors.alternateBase());
        painter.drawRoundedRect(rect(), radius, radius);
        if (isDown())
            painter.drawRoundedRect(rect(), radius, radius);
    }
    if (focused)
        ControlPaint::outline(painter, *this, radius);
    painter.setPen(colors.color(QPalette::WindowText));
    m_text.draw(painter, width(), layoutDirection());
}

void PanelButton::changeEvent(QEvent *event)
{
    if (event->type() == QEvent::FontChange)
        m_text.setFont(font());
    Button::changeEvent(event);
}

void PanelButton::keyPressEvent(QKeyEvent *event)
{
    switch (event->key()) {
    case Qt::Key_Up:
    case Qt::Key_Down:
    case Qt::Key_Left:
    case Qt::Key_Right:
        // The panel decides which command is next.
        event->ignore();
        return;
    default:
        Button::keyPressEvent(event);
    }
}

void PanelButton::mouseDoubleClickEvent(QMouseEvent *event)
{
    event->accept();
}

} // namespace tidewick
