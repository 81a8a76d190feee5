// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "ui/controls/Picker.h"

#include "ui/controls/Announcer.h"
#include "ui/controls/ControlMetrics.h"
#include "ui/controls/ControlPaint.h"
#include "ui/controls/PickerAccess.h"
#include "ui/controls/PickerList.h"
#include "ui/controls/TextScale.h"

#include <QAbstractItemView>
#include <QKeyEvent>
#include <QStyle>
#include <QWheelEvent>

namespace tidewick {

Picker::Picker(const QString &question, QWidget *parent)
    : QComboBox(parent), m_announcer(new Announcer(parent))
{
    PickerAccess::install();
    setAccessibleName(question);
    setFocusPolicy(Qt::StrongFocus);
    setAttribute(Qt::WA_Hover);
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    makePickerList(*this);
    connect(this, &QComboBox::activated, this,
            [this](int index) { emit picked(m_choices.at(index).value); });
}

void Picker::offer(const QList<Choice> &choices, qint64 current)
{
    const QString before = currentText();
    if (choices != m_choices) {
        hidePopup();
        m_choices = choices;
        clear();
        for (const Choice &choice : choices)
            addItem(choice.label, choice.value);
        updateGeometry();
    }
    setCurrentIndex(findData(current));
    if (hasFocus() && currentText() != before)
        PickerAccess::tellEntry(*this);
}

void Picker::showPopup()
{
    QComboBox::showPopup();
    PickerAccess::tellListState(*this);
    // Qt 6.4 does not pass that on, and the entry may be the one that was spoken last.
    m_announcer->say(QStringLiteral("expanded"));
    // Qt reports the entry first and then the list around it.
    PickerAccess::tellEntry(*this);
}

void Picker::hidePopup()
{
    const bool wasOpen = view()->isVisible();
    QComboBox::hidePopup();
    if (wasOpen)
        PickerAccess::tellListState(*this);
}

QSize Picker::sizeHint() const
{
    int text = 0;
    for (const Choice &choice : m_choices)
        text = std::max(text, fontMetrics().horizontalAdvance(choice.label));
    const int needed = points(ControlMetrics::controlPadding) + text
                       + points(ControlMetrics::signMargin) + points(ControlMetrics::signWidth)
                       + points(ControlMetrics::signMargin) + 1;
    return {std::max(points(ControlMetrics::pickerWidth), needed),
            std::max(points(ControlMetrics::controlHeight), TextScale::lineHeight(font()) + 4)};
}

void Picker::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    ControlPaint::control(painter, *this, false);

    const int sign = points(ControlMetrics::signWidth);
    const int signSpace = sign + points(ControlMetrics::signMargin);
    painter.setPen(palette().color(QPalette::ButtonText));
    ControlPaint::line(painter, rect(), points(ControlMetrics::controlPadding), layoutDirection(),
                       currentText());

    const QRectF place =
        QStyle::visualRect(layoutDirection(), rect(), {width() - signSpace, 0, sign, height()});
    const qreal half = sign * 0.4;
    const qreal gap = sign * 0.22;
    const QColor color = palette().color(isEnabled() ? QPalette::Active : QPalette::Disabled,
                                         QPalette::PlaceholderText);
    for (const int direction : {-1, 1}) {
        const QPointF base = place.center() + QPointF(0, direction * gap);
        ControlPaint::arrow(painter, base + QPointF(0, direction * half), base - QPointF(half, 0),
                            base + QPointF(half, 0), color, sign * 0.17);
    }
}

void Picker::keyPressEvent(QKeyEvent *event)
{
    const QString before = currentText();
    QComboBox::keyPressEvent(event);
    if (currentText() != before)
        PickerAccess::tellEntry(*this);
}

void Picker::wheelEvent(QWheelEvent *event)
{
    event->ignore();
}

void Picker::changeEvent(QEvent *event)
{
    if (event->type() == QEvent::FontChange)
        updateGeometry();
    else if (event->type() == QEvent::EnabledChange && !isEnabled())
        hidePopup(); // its entries must no longer be picked
    QComboBox::changeEvent(event);
}

int Picker::points(int measure) const
{
    return TextScale::scaled(font(), measure);
}

} // namespace tidewick
