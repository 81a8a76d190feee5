// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "ui/ledger/LedgerCard.h"

#include "ui/controls/DevicePixels.h"
#include "ui/controls/TextScale.h"
#include "ui/ledger/LedgerDrawing.h"

#include <QAccessibleWidget>
#include <QPainter>
#include <QStyle>

namespace tidewick {

namespace {

/// Screen readers pass over a widget that only seems to hold others, even if it has a name. A card
/// without a title is all text.
QAccessibleInterface *makeAccessible(const QString &className, QObject *object)
{
    auto *card = qobject_cast<LedgerCard *>(object);
    if (!card || className != QLatin1String(LedgerCard::staticMetaObject.className()))
        return nullptr; // other cards have their own
    return new QAccessibleWidget(card, card->hasTitle() ? QAccessible::Grouping
                                                        : QAccessible::StaticText);
}

} // namespace

LedgerCard::LedgerCard(const LedgerLook &look, const QString &title, QWidget *parent)
    : QWidget(parent), m_look(look), m_title(title)
{
    QAccessible::installFactory(makeAccessible);
    setAccessibleName(title);
    // The card paints its whole background, so that the window's is not painted below it as well.
    setAttribute(Qt::WA_OpaquePaintEvent);
}

void LedgerCard::paintCard(QPainter &painter, const QRect &area) const
{
    const int radius = metrics().radius;
    if (rect().adjusted(radius, 1, -radius, -1).contains(area)
        || rect().adjusted(1, radius, -1, -radius).contains(area)) {
        painter.fillRect(area, colors().surface);
    } else {
        painter.fillRect(area, colors().bg);
        // Two fills take a fraction of the time that a translucent outline takes.
        const double line = DevicePixels::hairline(painter);
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setPen(Qt::NoPen);
        painter.setBrush(LedgerDrawing::over(colors().line, colors().surface));
        painter.drawRoundedRect(rect(), radius, radius);
        painter.setBrush(colors().surface);
        painter.drawRoundedRect(QRectF(rect()).adjusted(line, line, -line, -line), radius - line,
                                radius - line);
        painter.setRenderHint(QPainter::Antialiasing, false);
    }
    if (!m_title.isEmpty() && visual(titleRect()).intersects(area))
        paintLine(painter, titleRect(), Qt::AlignLeft, metrics().cardTitle, colors().ink, m_title);
}

QRect LedgerCard::visual(const QRect &part) const
{
    return QStyle::visualRect(layoutDirection(), rect(), part);
}

Qt::Alignment LedgerCard::visual(Qt::Alignment alignment) const
{
    return QStyle::visualAlignment(layoutDirection(), alignment);
}

void LedgerCard::paintLine(QPainter &painter, const QRect &part, Qt::Alignment alignment,
                           const QFont &font, const QColor &color, const QString &text) const
{
    LedgerDrawing::line(painter, visual(part), visual(alignment), font, color, text);
}

QRect LedgerCard::titleRect() const
{
    return {metrics().cardSide, metrics().cardTop, width() - 2 * metrics().cardSide,
            TextScale::lineHeight(metrics().cardTitle)};
}

QRect LedgerCard::besideTitle() const
{
    const int title = QFontMetrics(metrics().cardTitle).horizontalAdvance(m_title);
    return titleRect().adjusted(title + metrics().gap, 0, 0, 0);
}

QRect LedgerCard::content() const
{
    QRect rect = titleRect();
    rect.setTop(rect.bottom() + 1 + metrics().titleGap);
    rect.setBottom(height() - metrics().cardTop - 1);
    return rect;
}

} // namespace tidewick
