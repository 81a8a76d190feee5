// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "ui/panel/PanelLine.h"

#include "ui/controls/DevicePixels.h"
#include "ui/controls/TextScale.h"
#include "ui/panel/PanelMetrics.h"

#include <QPainter>

namespace tidewick {

PanelLine::PanelLine(QWidget *parent) : QFrame(parent)
{
    setFrameShape(QFrame::HLine);
}

int PanelLine::heightForWidth(int) const
{
    return TextScale::scaled(font(), PanelMetrics::line);
}

void PanelLine::paintEvent(QPaintEvent *)
{
    const int margin =
        TextScale::scaled(font(), PanelMetrics::lineMargin - PanelMetrics::fillMargin);
    QPainter painter(this);
    const QRect middle(margin, height() / 2, width() - 2 * margin, 1);
    QRectF line = DevicePixels::snapped(painter, middle);
    line.setHeight(DevicePixels::hairline(painter));
    painter.fillRect(line, palette().color(QPalette::Mid));
}

} // namespace tidewick
