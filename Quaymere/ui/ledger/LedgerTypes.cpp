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
        paintRow(painter, line);
    m_remarkText.draw(painter, visual(lineRect(m_rows.size())), visual(Qt::AlignLeft),
                      metrics().caption, colors().ink3, m_remark);
}

void LedgerTypes::paintRow(QPainter &painter, qsizetype line) const
{
    const LedgerFeed::TypeCount &type = m_rows.at(line);
    const QRect row = lineRect(line);
    const int start = metrics().mark + metrics().markGap;
    const QRect name(row.left() + start, row.top(),
                     metrics().nameColumn - start - metrics().markGap, row.height());
    paintLine(painter, name, Qt::AlignLeft, metrics().body, figureColor(), type.type);

    const QString count = QString::number(type.count);
    const QFontMetrics font(metrics().body);
    QRect figure = row;
    figure.setLeft(row.right() + 1
                   - std::max(font.horizontalAdvance(count),
                              font.horizontalAdvance(QStringLiteral("0000000"))));
    m_counts.at(std::size_t(line))
        .draw(painter, visual(figure), visual(Qt::AlignRight), metrics().body, besideColor(),
              count);

    painter.setRenderHint(QPainter::Antialiasing);
    const QColor color = colorFor(type.type);
    LedgerDrawing::mark(painter, visual(QRect(row.left(), row.top(), metrics().mark, row.height())),
                        metrics(),
                        isOld() ? LedgerDrawing::mixed(colors().surface, color, 0.5F) : color);
    QRect track = row;
    track.setLeft(row.left() + metrics().nameColumn + metrics().trackGap);
    track.setRight(figure.left() - metrics().markGap - 1);
    paintShare(painter, track, line);
    painter.setRenderHint(QPainter::Antialiasing, false);
}

/// Paints the type's share of the largest count as a part of the track.
void LedgerTypes::paintShare(QPainter &painter, const QRect &track, qsizetype line) const
{
    const int thickness = std::max(3, metrics().mark / 2);
    if (track.width() <= thickness)
        return;
    const double part = double(m_rows.at(line).count) / double(m_rows.first().count);
    const auto paint = [&](double width, const QColor &color) {
        const QRectF whole = visual(track);
        QRectF bar(whole.left(), whole.center().y() - thickness / 2.0, width, thickness);
        if (layoutDirection() == Qt::RightToLeft)
            bar.moveRight(whole.right());
        painter.setBrush(color);
        painter.drawRoundedRect(bar, thickness / 2.0, thickness / 2.0);
    };
    paint(track.width(), colors().accentSoft);
    paint(std::max<double>(thickness, track.width() * part),
          LedgerDrawing::mixed(colors().surface, colorFor(m_rows.at(line).type),
                               isOld() ? 0.4F : 0.8F));
}

} // namespace tidewick
