// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "ui/ledger/LedgerHeader.h"

#include "ui/controls/TextScale.h"
#include "ui/ledger/LedgerDrawing.h"
#include "ui/ledger/LedgerTexts.h"

#include <QPaintEvent>
#include <QPainter>

#include <cmath>

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

void LedgerHeader::setAge(const QString &age)
{
    if (age == m_age)
        return;
    m_age = age;
    setAccessibleDescription(age);
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
    paintLine(painter, line, Qt::AlignLeft, metrics().eyebrow, colors().ink3,
              QStringLiteral("LIVE LEDGER"));

    const QRect pill = status();
    line.setTop(line.bottom() + 1);
    line.setBottom(height() - 1);
    line.setRight(pill.left() - metrics().gap);
    QRect room = pill;
    room.setLeft(int(std::ceil(paintIndex(painter, line))) + metrics().gap);
    room.setRight(line.right());
    m_ageText.draw(painter, visual(room), visual(Qt::AlignRight), metrics().caption, colors().ink2,
                   m_age);
    paintStatus(painter, pill);
}

/// Paints the newest ledger's index behind its label and returns their width. They are one phrase
/// and keep their order in every layout direction.
qreal LedgerHeader::paintIndex(QPainter &painter, const QRect &room) const
{
    const QString label = QStringLiteral("Ledger ");
    const int labelWidth = QFontMetrics(metrics().heading).horizontalAdvance(label);
    const int most = room.width() - labelWidth;
    const qreal width = m_indexText.width(m_index, metrics().headingNumber, most);

    QRect phrase = room;
    phrase.setWidth(labelWidth + int(std::ceil(width)));
    phrase = visual(phrase);
    LedgerDrawing::line(painter, phrase, Qt::AlignLeft, metrics().heading, besideColor(), label);
    phrase.setLeft(phrase.left() + labelWidth);
    phrase.setWidth(most);
    m_indexText.draw(painter, phrase, Qt::AlignLeft, metrics().headingNumber, figureColor(),
                     m_index);
    return labelWidth + width;
}

/// The area of the status text and the dot before it, a field with rounded ends.
QRect LedgerHeader::status() const
{
    const QFontMetrics font(metrics().caption);
    const int height = font.height() * 8 / 5;
    const int width =
        height + 2 * dotSize() + font.horizontalAdvance(LedgerTexts::status(m_connected));
    return {this->width() - width, this->height() - height, width, height};
}

/// The dot's diameter, and the space behind it.
int LedgerHeader::dotSize() const
{
    return QFontMetrics(metrics().caption).height() / 2;
}

void LedgerHeader::paintStatus(QPainter &painter, const QRect &pill) const
{
    const int height = pill.height();
    const int margin = height * 2 / 5;
    const int dot = dotSize();

    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    QColor idle = colors().line;
    idle.setAlphaF(std::min(idle.alphaF(), 0.2F)); // text is read on it
    painter.setBrush(m_connected ? colors().accentSoft : idle);
    painter.drawRoundedRect(visual(pill), height / 2.0, height / 2.0);
    painter.setBrush(m_connected ? colors().accent : colors().ink3);
    const QRect room = visual(pill.adjusted(margin, 0, margin + dot - pill.width(), 0));
    painter.drawEllipse(QRectF(room.left(), room.top() + (height - dot) / 2.0, dot, dot));
    paintLine(painter, pill.adjusted(margin + 2 * dot, 0, 0, 0), Qt::AlignLeft, metrics().caption,
              m_connected ? colors().link : colors().ink2, LedgerTexts::status(m_connected));
}

} // namespace tidewick
