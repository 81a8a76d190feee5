// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "ui/dialogs/DialogMark.h"

#include "ui/controls/TextScale.h"

#include <QEvent>
#include <QPainter>

namespace tidewick {

namespace {

/// In points for text of 10 points.
constexpr int markSide = 38;

} // namespace

DialogMark::DialogMark(SquareStatusImage image, QWidget *parent)
    : QWidget(parent), m_image(std::move(image))
{
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
}

QSize DialogMark::sizeHint() const
{
    const int side = TextScale::scaled(font(), markSide);
    return QSize(side, side).grownBy(contentsMargins());
}

void DialogMark::paintEvent(QPaintEvent *)
{
    const qreal ratio = devicePixelRatioF();
    const QRect place = contentsRect();
    QImage picture =
        m_image.rendered((QSizeF(place.size()) * ratio).toSize(),
                         palette().color(QPalette::WindowText), SquareStatusImage::Edge::Plain);
    picture.setDevicePixelRatio(ratio);
    QPainter(this).drawImage(place.topLeft(), picture);
}

void DialogMark::changeEvent(QEvent *event)
{
    if (event->type() == QEvent::FontChange)
        updateGeometry();
    QWidget::changeEvent(event);
}

} // namespace tidewick
