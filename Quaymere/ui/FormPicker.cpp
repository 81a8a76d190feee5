// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "ui/FormPicker.h"

#include "ui/FormMetrics.h"
#include "ui/FormPaint.h"
#include "ui/PickerList.h"
#include "ui/TextScale.h"

#include <QEvent>
#include <QStyle>
#include <QWheelEvent>

namespace tidewick {

FormPicker::FormPicker(QWidget *parent) : QComboBox(parent)
{
    setFocusPolicy(Qt::StrongFocus);
    setAttribute(Qt::WA_Hover);
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    makePickerList(*this);
    connect(this, &QComboBox::activated, this,
            [this](int index) { emit picked(m_choices.at(index).value); });
}

void FormPicker::offer(const QList<Choice> &choices, qint64 current)
{
    if (choices != m_choices) {
        hidePopup();
        m_choices = choices;
        clear();
        for (const Choice &choice : choices)
            addItem(choice.label, choice.value);
        updateGeometry();
    }
    setCurrentIndex(findData(current));
}

QSize FormPicker::sizeHint() const
{
    int text = 0;
    for (const Choice &choice : m_choices)
        text = std::max(text, fontMetrics().horizontalAdvance(choice.label));
    const int needed = points(FormMetrics::controlPadding) + text + points(FormMetrics::signMargin)
                       + points(FormMetrics::signWidth) + points(FormMetrics::signMargin) + 1;
    return {std::max(points(FormMetrics::pickerWidth), needed),
            std::max(points(FormMetrics::controlHeight), TextScale::lineHeight(font()) + 4)};
}

void FormPicker::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    FormPaint::control(painter, *this, false);

    const int sign = points(FormMetrics::signWidth);
    const int signSpace = sign + points(FormMetrics::signMargin);
    painter.setPen(palette().color(QPalette::ButtonText));
    FormPaint::line(painter, rect(), points(FormMetrics::controlPadding), layoutDirection(),
                    currentText());

    const QRectF place =
        QStyle::visualRect(layoutDirection(), rect(), {width() - signSpace, 0, sign, height()});
    const qreal half = sign * 0.4;
    const qreal gap = sign * 0.22;
    const QColor color = palette().color(isEnabled() ? QPalette::Active : QPalette::Disabled,
                                         QPalette::PlaceholderText);
    for (const int direction : {-1, 1}) {
        const QPointF base = place.center() + QPointF(0, direction * gap);
        FormPaint::arrow(painter, base + QPointF(0, direction * half), base - QPointF(half, 0),
                         base + QPointF(half, 0), color, sign * 0.17);
    }
}

void FormPicker::wheelEvent(QWheelEvent *event)
{
    event->ignore();
}

void FormPicker::changeEvent(QEvent *event)
{
    if (event->type() == QEvent::FontChange)
        updateGeometry();
    else if (event->type() == QEvent::EnabledChange && !isEnabled())
        hidePopup(); // what is in it must not be picked any more
    QComboBox::changeEvent(event);
}

int FormPicker::points(int measure) const
{
    return TextScale::scaled(font(), measure);
}

} // namespace tidewick
