// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "ui/panel/PanelLabel.h"

#include "ui/controls/TextScale.h"
#include "ui/controls/ToolTip.h"
#include "ui/panel/PanelMetrics.h"
#include "ui/panel/PanelTexts.h"

#include <QClipboard>
#include <QContextMenuEvent>
#include <QGuiApplication>
#include <QMenu>
#include <QPainter>

namespace tidewick {

PanelLabel::PanelLabel(QPalette::ColorRole color, int sideMargin, int padding, QWidget *parent)
    : QLabel(parent), m_text(sideMargin, padding)
{
    setForegroundRole(color);
    setCursor(Qt::IBeamCursor);
    // Reading needs no focus, but copying does. No key moves the focus here.
    setFocusPolicy(Qt::ClickFocus);
    m_text.setFont(font());
    m_text.setTabular();
}

void PanelLabel::setFramed()
{
    constexpr qreal lineHeight = 1.2;
    m_isFramed = true;
    m_text.setLineHeight(lineHeight);
}

void PanelLabel::setWholeText(const QString &text)
{
    m_text.set(text);
    m_selected = {};
    setAccessibleName(m_text.text());
    ToolTip::set(*this, m_text.cutText());
    update();
}

void PanelLabel::setOld(bool old)
{
    if (old)
        setAccessibleDescription(PanelTexts::oldFigure());
    if (std::exchange(m_isOld, old) != old)
        update();
}

int PanelLabel::heightForWidth(int width) const
{
    return m_text.height(width);
}

void PanelLabel::paintEvent(QPaintEvent *)
{
    QTextLayout::FormatRange selection;
    selection.start = std::min(m_selected.start, m_selected.end);
    selection.length = std::abs(m_selected.end - m_selected.start);
    selection.format.setBackground(palette().highlight());
    selection.format.setForeground(palette().highlightedText());

    QPainter painter(this);
    if (m_isFramed) {
        const qreal radius = TextScale::scaled(font(), PanelMetrics::adviceRadius);
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setPen(Qt::NoPen);
        painter.setBrush(palette().toolTipBase());
        painter.drawRoundedRect(rect(), radius, radius);
    }
    painter.setPen(palette().color(m_isOld ? QPalette::PlaceholderText : foregroundRole()));
    m_text.draw(painter, width(), layoutDirection(), {selection});
}

void PanelLabel::changeEvent(QEvent *event)
{
    if (event->type() == QEvent::FontChange)
        m_text.setFont(font());
    QLabel::changeEvent(event);
}

void PanelLabel::mousePressEvent(QMouseEvent *event)
{
    if (event->button() != Qt::LeftButton)
        return QLabel::mousePressEvent(event);
    const int position = m_text.positionAt(event->position());
    select({position, position});
}

void PanelLabel::mouseMoveEvent(QMouseEvent *event)
{
    if (!(event->buttons() & Qt::LeftButton))
        return QLabel::mouseMoveEvent(event);
    const int position = m_text.positionAt(event->position());
    select({m_selected.start, position});
}

void PanelLabel::mouseReleaseEvent(QMouseEvent *event)
{
    QClipboard *clipboard = QGuiApplication::clipboard();
    if (event->button() == Qt::LeftButton && clipboard->supportsSelection()
        && !m_selected.isEmpty())
        clipboard->setText(selectedText(), QClipboard::Selection);
}

void PanelLabel::mouseDoubleClickEvent(QMouseEvent *event)
{
    if (event->button() != Qt::LeftButton)
        return QLabel::mouseDoubleClickEvent(event);
    select(m_text.wordAt(m_text.positionAt(event->position())));
}

void PanelLabel::keyPressEvent(QKeyEvent *event)
{
    if (event == QKeySequence::Copy && !m_selected.isEmpty())
        QGuiApplication::clipboard()->setText(selectedText());
    else if (event == QKeySequence::SelectAll)
        select({0, int(m_text.text().size())});
    else
        QLabel::keyPressEvent(event);
}

void PanelLabel::focusOutEvent(QFocusEvent *event)
{
    // The selection survives while the label's own menu is open, and while the user pastes it in
    // another window.
    if (event->reason() != Qt::PopupFocusReason && event->reason() != Qt::ActiveWindowFocusReason)
        select({});
    QLabel::focusOutEvent(event);
}

void PanelLabel::contextMenuEvent(QContextMenuEvent *event)
{
    const QString text = m_selected.isEmpty() ? m_text.text() : selectedText();
    auto *menu = new QMenu(this);
    menu->setAttribute(Qt::WA_DeleteOnClose);
    menu->addAction(QStringLiteral("Copy"), menu,
                    [text] { QGuiApplication::clipboard()->setText(text); });
    menu->popup(event->globalPos());
}

QString PanelLabel::selectedText() const
{
    const int start = std::min(m_selected.start, m_selected.end);
    return m_text.text().mid(start, std::abs(m_selected.end - m_selected.start));
}

void PanelLabel::select(const WrappedText::Range &range)
{
    if (range == m_selected)
        return;
    m_selected = range;
    update();
}

} // namespace tidewick
