// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "ui/controls/FittedWindow.h"

#include "ui/controls/FreeArea.h"

#include <QEvent>
#include <QScreen>
#include <QScrollArea>
#include <QStyle>
#include <QWindow>

namespace tidewick {

FittedWindow::FittedWindow(QWidget *content, QWidget *parent)
    : QWidget(parent, Qt::Window), m_area(new QScrollArea(this)), m_content(content)
{
    setWindowFlag(Qt::WindowMaximizeButtonHint, false);
    m_area->setFrameShape(QFrame::NoFrame);
    m_area->setFocusPolicy(Qt::NoFocus);
    m_area->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    m_area->setWidget(content);
    content->setAutoFillBackground(false);
    // Not on a control: none may receive a keystroke meant for another window.
    content->setFocus();
}

void FittedWindow::setBoundByScreen(bool bound)
{
    m_isBoundByScreen = bound;
    fit();
}

void FittedWindow::ensureVisible(QWidget *part)
{
    m_area->ensureWidgetVisible(part);
}

void FittedWindow::adaptContent(QSize) {}

void FittedWindow::fitContent(int width)
{
    m_content->resize(width, m_content->heightForWidth(width));
}

void FittedWindow::showEvent(QShowEvent *event)
{
    QWidget::showEvent(event);
    connect(windowHandle(), &QWindow::screenChanged, this, &FittedWindow::followScreen,
            Qt::UniqueConnection);
    followScreen();
}

void FittedWindow::resizeEvent(QResizeEvent *)
{
    fillWindow();
}

void FittedWindow::changeEvent(QEvent *event)
{
    QWidget::changeEvent(event);
    switch (event->type()) {
    case QEvent::FontChange:
    case QEvent::StyleChange:
    case QEvent::LayoutDirectionChange:
        fit();
        break;
    default:
        break;
    }
}

void FittedWindow::followScreen()
{
    disconnect(m_screenChange);
    m_screenChange =
        connect(screen(), &QScreen::availableGeometryChanged, this, &FittedWindow::fit);
    fit();
}

void FittedWindow::fit()
{
    const QSize room =
        m_isBoundByScreen ? freeArea(*this) : QSize(QWIDGETSIZE_MAX, QWIDGETSIZE_MAX);
    const int width = std::min(wantedWidth(), room.width());
    adaptContent({width, room.height()});
    setFixedSize(width, std::clamp(m_content->heightForWidth(width), 1, room.height()));
    fillWindow();
}

/// Lays out the content for the actual size: tiling window managers assign other sizes than
/// requested.
void FittedWindow::fillWindow()
{
    m_area->setGeometry(rect());
    int width = this->width();
    if (m_content->heightForWidth(width) > height())
        width -= style()->pixelMetric(QStyle::PM_ScrollBarExtent, nullptr, m_area);
    fitContent(width);
}

} // namespace tidewick
