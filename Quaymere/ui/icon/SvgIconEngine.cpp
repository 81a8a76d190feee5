// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "ui/icon/SvgIconEngine.h"

#include <QPainter>
#include <QPixmap>
#include <QSvgRenderer>

namespace tidewick {

void SvgIconEngine::addFile(const QString &file, const QSize &, QIcon::Mode, QIcon::State)
{
    m_drawing = std::make_shared<QSvgRenderer>(file);
    m_drawing->setAspectRatioMode(Qt::KeepAspectRatio);
}

void SvgIconEngine::paint(QPainter *painter, const QRect &rect, QIcon::Mode, QIcon::State)
{
    if (!isNull())
        m_drawing->render(painter, rect);
}

QPixmap SvgIconEngine::pixmap(const QSize &size, QIcon::Mode mode, QIcon::State state)
{
    QPixmap pixmap(size);
    pixmap.fill(Qt::transparent);
    QPainter painter(&pixmap);
    paint(&painter, pixmap.rect(), mode, state);
    return pixmap;
}

QIconEngine *SvgIconEngine::clone() const
{
    return new SvgIconEngine(*this);
}

QString SvgIconEngine::key() const
{
    return QStringLiteral("tidewick-svg");
}

bool SvgIconEngine::isNull()
{
    return !m_drawing || !m_drawing->isValid();
}

QIconEngine *SvgIconPlugin::create(const QString &)
{
    return new SvgIconEngine; // Qt adds the file itself
}

} // namespace tidewick
