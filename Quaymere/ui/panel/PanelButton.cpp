// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "ui/panel/PanelButton.h"

#include "ui/controls/ControlPaint.h"
#include "ui/controls/TextScale.h"
#include "ui/controls/ToolTip.h"
#include "ui/panel/PanelMetrics.h"
#include "ui/panel/PanelTexts.h"

#include <QAccessibleWidget>
#include <QKeyEvent>
#include <QPainter>

namespace tidewick {

namespace {

/// The button under its current text. Qt would use the text with which it was last named.
class PanelButtonInterface final : public QAccessibleWidget
{
public:
    explicit PanelButtonInterface(PanelButton &button)
        : QAccessibleWidget(&button, QAccessible::Button), m_button(button)
    {
    }

    QString text(QAccessible::Text kind) const override
    {
        return kind == QAccessible::Name ? m_button.wholeText() : QAccessibleWidget::text(kind);
    }

    QStringList actionNames() const override
    {
        return QStringList{pressAction()} + QAccessibleWidget::actionNames();
    }

    void doAction(const QString &action) override
    {
        if (action == pressAction())
            m_button.click();
        else
            QAccessibleWidget::doAction(action);
    }

private:
    PanelButton &m_button;
};

QAccessibleInterface *makeAccessible(const QString &, QObject *object)
{
    auto *button = qobject_cast<PanelButton *>(object);
    return button ? new PanelButtonInterface(*button) : nullptr;
}

} // namespace

PanelButton::PanelButton(QWidget *parent)
    : Button(parent),
      m_text(PanelMetrics::textMargin - PanelMetrics::fillMargin, PanelMetrics::commandPadding)
{
    QAccessible::installFactory(makeAccessible);
    setFocusPolicy(Qt::TabFocus);
    setCursor(Qt::PointingHandCursor);
    m_text.setFont(font());
    m_text.setTabular();
}

void PanelButton::setWholeText(const QString &text)
{
    m_text.set(text);
    if (!hasFocus())
        nameAnew();
    ToolTip::set(*this, m_text.cutText());
    update();
}

void PanelButton::nameAnew()
{
    // Not as the button's text, in which an ampersand would mark a mnemonic.
    if (accessibleName() != wholeText())
        setAccessibleName(wholeText());
}

void PanelButton::setChoosable(bool choosable)
{
    if (choosable == isEnabled())
        return;
    setEnabled(choosable);
    setCursor(choosable ? Qt::PointingHandCursor : Qt::ArrowCursor);
}

void PanelButton::setOld(bool old)
{
    if (old)
        setAccessibleDescription(PanelTexts::oldFigure());
    if (std::exchange(m_isOld, old) != old)
        update();
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
    const bool filled = isEnabled() && (focused || underMouse());
    if (filled) {
        painter.setPen(Qt::NoPen);
        painter.setBrush(colors.alternateBase());
        painter.drawRoundedRect(rect(), radius, radius);
        if (isDown())
            painter.drawRoundedRect(rect(), radius, radius);
    }
    if (focused)
        ControlPaint::outline(painter, *this, radius);
    // On the fill, the faintest text would be too faint.
    const QPalette::ColorRole old = filled ? QPalette::Text : QPalette::PlaceholderText;
    painter.setPen(colors.color(m_isOld ? old : QPalette::WindowText));
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

void PanelButton::focusOutEvent(QFocusEvent *event)
{
    Button::focusOutEvent(event);
    nameAnew();
}

void PanelButton::mouseDoubleClickEvent(QMouseEvent *event)
{
    event->accept();
}

} // namespace tidewick
