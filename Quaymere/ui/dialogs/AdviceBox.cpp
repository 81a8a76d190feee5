// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "ui/dialogs/AdviceBox.h"

#include "ui/controls/ControlPaint.h"
#include "ui/controls/TextLabel.h"
#include "ui/controls/TextScale.h"

#include <QVBoxLayout>

namespace tidewick {

namespace {

// In points for text of 10 points.
constexpr int radius = 8;
constexpr int sidePadding = 12;
constexpr int padding = 9;

} // namespace

AdviceBox::AdviceBox(QWidget *parent)
    : QWidget(parent), m_text(new TextLabel(TextLabel::Look::Advice, {}, this))
{
    const int side = TextScale::scaled(font(), sidePadding);
    const int end = TextScale::scaled(font(), padding);
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(side, end, side, end);
    layout->addWidget(m_text);
}

void AdviceBox::setText(const QString &text)
{
    m_text->setWholeText(text);
}

void AdviceBox::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    ControlPaint::box(painter, contentsRect(), TextScale::scaled(font(), radius),
                      palette().color(QPalette::ToolTipBase), Qt::transparent);
}

} // namespace tidewick
