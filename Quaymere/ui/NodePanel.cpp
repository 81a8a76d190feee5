// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "ui/NodePanel.h"

#include "ui/PanelMetrics.h"
#include "ui/PanelPalette.h"
#include "ui/PanelRows.h"

#include <QCloseEvent>
#include <QScreen>
#include <QScrollArea>
#include <QStyle>
#include <QWindow>

namespace tidewick {

namespace {

/// What a title bar takes, as far as is known before the window has one.
constexpr int usualFrame = 40;

} // namespace

NodePanel::NodePanel(QWidget *parent)
    : QWidget(parent, Qt::Window), m_area(new QScrollArea(this)), m_rows(new PanelRows)
{
    setWindowTitle(QStringLiteral("Tidewick"));
    setWindowFlag(Qt::WindowMaximizeButtonHint, false);
    setPalette(panelPalette(m_dark));
    m_area->setFrameShape(QFrame::NoFrame);
    m_area->setFocusPolicy(Qt::NoFocus);
    m_area->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    m_area->setWidget(m_rows);
    m_rows->setAutoFillBackground(false);
    m_rows->setFocus();
    connect(m_rows, &PanelRows::commandChosen, this, &NodePanel::commandChosen);
    connect(m_rows, &PanelRows::heightChanged, this, &NodePanel::fit);
    connect(m_rows, &PanelRows::focusMoved, m_area,
            [area = m_area](QWidget *button) { area->ensureWidgetVisible(button); });
    fit();
}

void NodePanel::setRows(const QList<MenuRow> &rows)
{
    m_rows->setRows(rows);
}

void NodePanel::setIcon(const QIcon &icon)
{
    m_rows->setIcon(icon);
}

void NodePanel::setHint(const QString &hint)
{
    m_rows->setHint(hint);
}

void NodePanel::setDark(bool dark)
{
    if (dark == m_dark)
        return;
    m_dark = dark;
    setPalette(panelPalette(dark));
}

void NodePanel::closeEvent(QCloseEvent *event)
{
    // An ignored event would also keep QApplication::quit() from ending the program.
    if (!event->spontaneous())
        return;
    event->ignore();
    showMinimized();
}

void NodePanel::showEvent(QShowEvent *event)
{
    QWidget::showEvent(event);
    connect(windowHandle(), &QWindow::screenChanged, this, &NodePanel::followScreen,
            Qt::UniqueConnection);
    followScreen();
}

void NodePanel::resizeEvent(QResizeEvent *)
{
    fillWindow();
}

void NodePanel::changeEvent(QEvent *event)
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

void NodePanel::followScreen()
{
    disconnect(m_screenChange);
    m_screenChange = connect(screen(), &QScreen::availableGeometryChanged, this, &NodePanel::fit);
    fit();
}

void NodePanel::fit()
{
    const QSize frame = (frameGeometry().size() - size()).expandedTo({0, usualFrame});
    const QSize room = screen()->availableSize() - frame;
    const int width =
        std::min(PanelMetrics::scaled(font(), PanelMetrics::width), std::max(1, room.width()));
    setFixedSize(width, std::clamp(m_rows->heightForWidth(width), 1, std::max(1, room.height())));
    fillWindow();
}

/// Window managers that tile give other sizes than asked for.
void NodePanel::fillWindow()
{
    m_area->setGeometry(rect());
    int width = this->width();
    if (m_rows->heightForWidth(width) > height())
        width -= style()->pixelMetric(QStyle::PM_ScrollBarExtent, nullptr, m_area);
    m_rows->fit(width);
}

} // namespace tidewick
