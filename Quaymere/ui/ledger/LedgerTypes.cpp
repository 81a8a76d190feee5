// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "ui/ledger/LedgerTypes.h"

#include "platform/text/DisplayText.h"
#include "ui/ledger/DrawnList.h"
#include "ui/ledger/LedgerDrawing.h"
#include "ui/ledger/LedgerTexts.h"
#include "ui/ledger/TypeColor.h"

#include <QPaintEvent>
#include <QPainter>

namespace tidewick {

namespace {

/// The lines as screen readers see them.
class TypeList final : public DrawnList
{
public:
    explicit TypeList(LedgerTypes &types) : DrawnList(types), m_types(types) {}

    QStringList names() const override { return m_types.lines(); }
    QRect itemRect(int line) const override { return m_types.lineRect(line); }

private:
    LedgerTypes &m_types;
};

QAccessibleInterface *makeAccessible(const QString &, QObject *object)
{
    auto *types = qobject_cast<LedgerTypes *>(object);
    return types ? new TypeList(*types) : nullptr;
}

} // namespace

LedgerTypes::LedgerTypes(const LedgerLook &look, QWidget *parent)
    : LedgerCard(look, QStringLiteral("By type, since opened"), parent)
{
    QAccessible::installFactory(makeAccessible);
    setTypes({});
}

void LedgerTypes::setTypes(const QList<LedgerFeed::TypeCount> &types)
{
    auto rows = types.first(std::min(types.size(), LedgerTexts::mostTypes));
    const QString remark =
        types.isEmpty() ? LedgerTexts::waiting() : LedgerTexts::moreTypes(types.size());
    for (LedgerFeed::TypeCount &row : rows)
        row.type = DisplayText::singleLine(row.type);
    if (rows == m_rows && remark == m_remark)
        return;
    m_rows = std::move(rows);
    m_remark = remark;
    update();
    const int lines = int(m_rows.size()) + (m_remark.isEmpty() ? 0 : 1);
    if (lines > m_lines) {
        m_lines = lines;
        emit grown();
    }
}

QStringList LedgerTypes::lines() const
{
    QStringList lines;
    for (const LedgerFeed::TypeCount &row : m_rows)
        lines += row.type + u' ' + QString::number(row.count);
    if (!m_remark.isEmpty())
        lines += m_remark;
    return lines;
}

QRect LedgerTypes::lineRect(qsizetype line) const
{
    QRect rect = content();
    rect.setHeight(metrics().typeRow);
    return rect.translated(0, int(line) * metrics().typeRow);
}

int LedgerTypes::wantedHeight() const
{
    return metrics().cardHeight(m_lines * metrics().typeRow);
}

void LedgerTypes::paintEvent(QPaintEvent *event)
{
    QPainter painter(this);
    paintCard(painter, event->rect());
    for (qsizetype line = 0; line < m_rows.size(); ++line)
        paintRow(painter, lineRect(line), m_rows.at(line));
    LedgerDrawing::line(painter, lineRect(m_rows.size()), Qt::AlignLeft, metrics().caption,
                        colors().ink3, m_remark);
}

void LedgerTypes::paintRow(QPainter &painter, const QRect &row,
                           const LedgerFeed::TypeCount &type) const
{
    const QColor color = colorFor(type.type);
    const int middle = row.top() + row.height() / 2;
    const int mark = metrics().mark;
    const QRect name(row.left() + mark + metrics().markGap, row.top(),
                     metrics().nameColumn - mark - 2 * metrics().markGap, row.height());
    LedgerDrawing::line(painter, name, Qt::AlignLeft, metrics().body, colors().ink, type.type);

    const QString count = QString::number(type.count);
    const int countWidth =
        std::max(QFontMetrics(metrics().body).horizontalAdvance(count),
                 QFontMetrics(metrics().body).horizontalAdvance(QStringLiteral("0000000")));
    QRect figure = row;
    figure.setLeft(row.right() + 1 - countWidth);
    LedgerDrawing::line(painter, figure, Qt::AlignRight, metrics().body, colors().ink2, count);

    const int thickness = std::max(3, metrics().mark / 2);
    const QRectF track(row.left() + metrics().nameColumn, middle - thickness / 2.0,
                       figure.left() - metrics().markGap - row.left() - metrics().nameColumn,
                       thickness);
    painter.setRenderHint(QPainter::Antialiasing);
    LedgerDrawing::mark(painter, row, metrics(), color);
    if (track.width() > thickness) {
        painter.setBrush(colors().accentSoft);
        painter.drawRoundedRect(track, thickness / 2.0, thickness / 2.0);
        QRectF share = track;
        share.setWidth(std::max<double>(thickness, track.width() * double(type.count)
                                                       / double(m_rows.first().count)));
        painter.setBrush(LedgerDrawing::mixed(colors().surface, color, 0.8F));
        painter.drawRoundedRect(share, thickness / 2.0, thickness / 2.0);
    }
    painter.setRenderHint(QPainter::Antialiasing, false);
}

} // namespace tidewick
