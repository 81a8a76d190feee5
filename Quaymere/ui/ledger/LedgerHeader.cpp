// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "ui/ledger/LedgerHeader.h"

#include "ui/controls/TextScale.h"
#include "ui/ledger/LedgerDrawing.h"
#include "ui/ledger/LedgerTexts.h"

#include <QPaintEvent>
#include <QPainter>

namespace tidewick {

LedgerHeader::LedgerHeader(const LedgerLook &look, QWidget *parent)
    : LedgerCard(look, {}, parent), m_index(LedgerTexts::latestIndex({}))
{
    nameAnew();
}

void LedgerHeader::setLedger(const QString &index)
{
    if (index == m_index)
        return;
    m_index = index;
    nameAnew();
    update();
}

void LedgerHeader::setConnected(bool connected)
{
    if (connected == m_connected)
        return;
    m_connected = connected;
    nameAnew();
    update();
}

void LedgerHeader::nameAnew()
{
    setAccessibleName(
        QStringLiteral("Ledger %1, %2").arg(m_index, LedgerTexts::status(m_connected)));
}

void LedgerHeader::paintEvent(QPaintEvent *event)
{
    QPainter painter(this);
    painter.fillRect(event->rect(), colors().bg);

    QRect line(0, 0, width(), TextScale::lineHeight(metrics().eyebrow));
    LedgerDrawing::line(painter, line, Qt::AlignLeft, metrics().eyebrow, colors().ink2,
                        QStringLiteral("LIVE LEDGER"));

    line.setTop(line.bottom() + 1);
    line.setBottom(height() - 1);
    const QString label = QStringLiteral("Ledger ");
    LedgerDrawing::line(painter, line, Qt::AlignLeft, metrics().heading, colors().ink2, label);
    line.setLeft(QFontMetrics(metrics().heading).horizontalAdvance(label));
    line.setRight(status().left() - metrics().gap);
    LedgerDrawing::line(painter, line, Qt::AlignLeft, metrics().headingNumber, colors().ink,
                        m_index);
    paintStatus(painter);
}

/// The area of the status text and the dot before it, a field with rounded ends.
QRect LedgerHeader::status() const
{
    const QFontMetrics font(metrics().caption);
    const int height = font.height() * 7 / 4;
    const int width =
        height + font.height() / 2 * 2 + font.horizontalAdvance(LedgerTexts::status(m_connected));
    return {this->width() - width, this->height() - height, width, height};
}

void LedgerHeader::paintStatus(QPainter &painter) const
{
    const QRect pill = status();
    const int height = pill.height();
    const int margin = height / 2;
    const int dot = QFontMetrics(metrics().caption).height() / 2;

    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(m_connected ? colors().accentSoft : colors().line);
    painter.drawRoundedRect(pill, height / 2.0, height / 2.0);
    painter.setBrush(m_connected ? colors().accent : colors().ink3);
    painter.drawEllipse(QRectF(pill.left() + margin, pill.top() + (height - dot) / 2.0, dot, dot));
    LedgerDrawing::line(painter, pill.adjusted(margin + 2 * dot, 0, 0, 0), Qt::AlignLeft,
                        metrics().caption, m_connected ? colors().link : colors().ink2,
                        LedgerTexts::status(m_connected));
}

} // namespace tidewick
