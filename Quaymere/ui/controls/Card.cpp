// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "ui/controls/Card.h"

#include "ui/controls/ControlMetrics.h"
#include "ui/controls/ControlPaint.h"
#include "ui/controls/DevicePixels.h"
#include "ui/controls/TextScale.h"

#include <QVBoxLayout>

namespace tidewick {

Card::Card(QWidget *parent) : QWidget(parent), m_rows(new QVBoxLayout(this))
{
    m_rows->setContentsMargins(0, 0, 0, 0);
    m_rows->setSpacing(0);
}

void Card::add(QWidget *row)
{
    m_rows->addWidget(row);
}

void Card::paintEvent(QPaintEvent *)
{
    const QColor line = palette().color(QPalette::Mid);
    QPainter painter(this);
    ControlPaint::box(painter, rect(), TextScale::scaled(font(), ControlMetrics::cardRadius),
                      palette().color(QPalette::Base), line);
    const qreal thickness = DevicePixels::hairline(painter);
    for (int i = 1; i < m_rows->count(); ++i) {
        const QRectF row = m_rows->itemAt(i)->geometry();
        QRectF border = DevicePixels::snapped(painter, row);
        border.setHeight(thickness);
        painter.fillRect(border.adjusted(thickness, 0, -thickness, 0), line);
    }
}

} // namespace tidewick
