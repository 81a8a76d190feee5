// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "ui/icon/AppIcon.h"

#include "desktop/SingleInstance.h"
#include "platform/files/Bundle.h"
#include "platform/files/Files.h"

#include <QGuiApplication>
#include <QImage>
#include <QPainter>

namespace tidewick {

namespace {

/// Returns the smallest rectangle that contains every visible pixel.
QRect drawnPart(const QImage &image)
{
    QRect drawn;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            if (image.pixelColor(x, y).alpha() > 0)
                drawn |= QRect(x, y, 1, 1);
        }
    }
    return drawn;
}

} // namespace

QIcon applicationIcon()
{
    const auto own = Bundle::main().resource("AppIcon", "svg");
    return QIcon::fromTheme(QLatin1String(SingleInstance::name),
                            own ? QIcon(Files::display(*own)) : QIcon());
}

AppIcon::AppIcon(QWidget *parent) : QWidget(parent), m_icon(QGuiApplication::windowIcon())
{
    constexpr int side = 64;
    setFixedSize(side, side);
    const QRect drawn = drawnPart(m_icon.pixmap(QSize(side, side), 1).toImage());
    const int largest = std::max(drawn.width(), drawn.height());
    if (largest == 0)
        return;
    const qreal scale = qreal(side) / largest;
    const QPointF middle = QRectF(drawn).center() * scale;
    m_place = QRectF(side / 2.0 - middle.x(), side / 2.0 - middle.y(), side * scale, side * scale)
                  .toRect();
}

bool AppIcon::isThere()
{
    return !QGuiApplication::windowIcon().isNull();
}

void AppIcon::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    m_icon.paint(&painter, m_place);
}

} // namespace tidewick
