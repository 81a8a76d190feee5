// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "ui/PanelLine.h"

#include "ui/PanelMetrics.h"

#include <QPainter>

#include <cmath>

namespace tidewick {

PanelLine::PanelLine(QWidget *parent) : QFrame(parent)
{
    setFrameShape(QFrame::HLine);
}

int PanelLine::heightForWidth(int) const
{
    return PanelMetrics::scaled(font(), PanelMetrics::line);
}

void PanelLine::paintEvent(QPaintEvent *)
{
    const int margin =
        PanelMetrics::scaled(font(), PanelMetrics::lineMargin - PanelMetrics::fillMargin);
    QPainter painter(this);
    const QRect middle(margin, height() / 2, width() - 2 * margin, 1);
    // Between the pixels of a screen of ratio 1.5, lines of one point would differ in thickness.
    QRectF pixels = painter.deviceTransform().mapRect(QRectF(middle));
    pixels.moveTop(std::round(pixels.top()));
    pixels.setHeight(std::max(1.0, std::floor(pixels.height())));
    painter.fillRect(painter.deviceTransform().inverted().mapRect(pixels),
                     palette().color(QPalette::Mid));
}

} // namespace tidewick
