// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "ui/FormCard.h"

#include "ui/DevicePixels.h"
#include "ui/FormMetrics.h"
#include "ui/FormPaint.h"
#include "ui/TextScale.h"

#include <QVBoxLayout>

namespace tidewick {

FormCard::FormCard(QWidget *parent) : QWidget(parent), m_rows(new QVBoxLayout(this))
{
    m_rows->setContentsMargins(0, 0, 0, 0);
    m_rows->setSpacing(0);
}

void FormCard::add(QWidget *row)
{
    m_rows->addWidget(row);
}

void FormCard::paintEvent(QPaintEvent *)
{
    const QColor line = palette().color(QPalette::Mid);
    QPainter painter(this);
    FormPaint::box(painter, rect(), TextScale::scaled(font(), FormMetrics::cardRadius),
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
