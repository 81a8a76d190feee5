// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "ui/controls/CardRow.h"

#include "ui/controls/ControlMetrics.h"
#include "ui/controls/TextLabel.h"
#include "ui/controls/TextScale.h"

#include <QEvent>
#include <QHBoxLayout>

namespace tidewick {

CardRow::CardRow(const QString &label, QWidget *control, QWidget *parent)
    : QWidget(parent), m_layout(new QHBoxLayout(this)),
      m_label(new TextLabel(TextLabel::Look::Label, label, this))
{
    m_label->setBuddy(control);
    m_layout->addWidget(m_label, 1);
    m_layout->addWidget(control, 0, Qt::AlignVCenter);
    fit();
}

CardRow::CardRow(const QString &label, TextLabel *value, QWidget *parent)
    : QWidget(parent), m_layout(new QHBoxLayout(this)),
      m_label(new TextLabel(TextLabel::Look::Label, label, this))
{
    m_label->setBuddy(value);
    m_layout->addWidget(m_label);
    m_layout->addWidget(value, 1);
    fit();
}

void CardRow::changeEvent(QEvent *event)
{
    if (event->type() == QEvent::FontChange || event->type() == QEvent::LayoutDirectionChange)
        fit();
    QWidget::changeEvent(event);
}

void CardRow::fit()
{
    const auto points = [this](int measure) { return TextScale::scaled(font(), measure); };
    const int margin = points(ControlMetrics::rowMargin);
    QMargins margins(points(ControlMetrics::rowPadding), margin, points(ControlMetrics::rowEnd),
                     margin);
    // Layouts mirror their content, but not their margins.
    if (layoutDirection() == Qt::RightToLeft)
        margins = {margins.right(), margin, margins.left(), margin};
    m_layout->setContentsMargins(margins);
    m_layout->setSpacing(points(ControlMetrics::rowGap));
    setMinimumHeight(points(ControlMetrics::controlHeight) + 2 * margin);
}

} // namespace tidewick
