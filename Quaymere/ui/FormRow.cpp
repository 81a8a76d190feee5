// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "ui/FormRow.h"

#include "ui/FormMetrics.h"
#include "ui/FormText.h"
#include "ui/TextScale.h"

#include <QEvent>
#include <QHBoxLayout>

namespace tidewick {

FormRow::FormRow(const QString &label, QWidget *control, QWidget *parent)
    : QWidget(parent), m_layout(new QHBoxLayout(this)),
      m_label(new FormText(FormText::Look::Label, label, this))
{
    m_label->setBuddy(control);
    m_layout->addWidget(m_label, 1, Qt::AlignVCenter);
    m_layout->addWidget(control, 0, Qt::AlignVCenter);
    fit();
}

FormRow::FormRow(const QString &label, FormText *value, QWidget *parent)
    : QWidget(parent), m_layout(new QHBoxLayout(this)),
      m_label(new FormText(FormText::Look::Label, label, this))
{
    m_layout->addWidget(m_label, 0, Qt::AlignVCenter);
    m_layout->addWidget(value, 1, Qt::AlignVCenter);
    fit();
}

void FormRow::changeEvent(QEvent *event)
{
    if (event->type() == QEvent::FontChange || event->type() == QEvent::LayoutDirectionChange)
        fit();
    QWidget::changeEvent(event);
}

void FormRow::fit()
{
    const auto points = [this](int measure) { return TextScale::scaled(font(), measure); };
    const int margin = points(FormMetrics::rowMargin);
    QMargins margins(points(FormMetrics::rowPadding), margin, points(FormMetrics::rowEnd), margin);
    // Layouts mirror what is in them, but not the space around it.
    if (layoutDirection() == Qt::RightToLeft)
        margins = {margins.right(), margin, margins.left(), margin};
    m_layout->setContentsMargins(margins);
    m_layout->setSpacing(points(FormMetrics::rowGap));
    setMinimumHeight(points(FormMetrics::controlHeight) + 2 * margin);
}

} // namespace tidewick
