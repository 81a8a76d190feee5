// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "ui/panel/PanelIcon.h"

#include "ui/controls/TextScale.h"
#include "ui/panel/PanelMetrics.h"

#include <QPainter>

#include <cmath>

namespace tidewick {

namespace {

/// Returns the span of columns with visible pixels; empty if there are none.
QRect drawnColumns(const QImage &image)
{
    const auto isEmpty = [&image](int column) {
        for (int row = 0; row < image.height(); ++row) {
            if (qAlpha(image.pixel(column, row)) > 0)
                return false;
        }
        return true;
    };
    int left = 0;
    int right = image.width();
    while (left < right && isEmpty(left))
        ++left;
    while (left < right && isEmpty(right - 1))
        --right;
    return {left, 0, right - left, image.height()};
}

} // namespace

PanelIcon::PanelIcon(QWidget *parent) : QWidget(parent)
{
    setAttribute(Qt::WA_TransparentForMouseEvents);
}

void PanelIcon::setIcon(const QIcon &icon)
{
    m_icon = icon;
    update();
}

int PanelIcon::drawnWidth() const
{
    const qreal ratio = devicePixelRatioF();
    return int(std::ceil(drawn(ratio).width() / ratio));
}

void PanelIcon::paintEvent(QPaintEvent *)
{
    const qreal ratio = devicePixelRatioF();
    QImage image = drawn(ratio);
    if (image.isNull())
        return;
    QPainter tint(&image);
    tint.setCompositionMode(QPainter::CompositionMode_SourceIn);
    tint.fillRect(image.rect(), palette().color(QPalette::WindowText));
    tint.end();
    image.setDevicePixelRatio(ratio);
    const qreal left = layoutDirection() == Qt::RightToLeft ? width() - image.width() / ratio : 0;
    QPainter(this).drawImage(QPointF(left, (height() - image.height() / ratio) / 2), image);
}

QImage PanelIcon::drawn(qreal ratio) const
{
    const QSize room(TextScale::scaled(font(), PanelMetrics::iconWidth),
                     TextScale::scaled(font(), PanelMetrics::iconHeight));
    QImage image =
        m_icon.pixmap(room, ratio).toImage().convertToFormat(QImage::Format_ARGB32_Premultiplied);
    image.setDevicePixelRatio(1);
    const QRect columns = drawnColumns(image);
    return columns.isEmpty() ? QImage() : image.copy(columns);
}

} // namespace tidewick
