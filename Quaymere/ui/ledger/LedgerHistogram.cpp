// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "ui/ledger/LedgerHistogram.h"

#include "ui/controls/DevicePixels.h"
#include "ui/ledger/LedgerDrawing.h"
#include "ui/ledger/LedgerHistogramAccess.h"
#include "ui/ledger/LedgerTexts.h"

#include <QMouseEvent>
#include <QPainter>
#include <QPainterPath>

#include <cmath>

namespace tidewick {

namespace {

constexpr int moveMilliseconds = 150;

/// Between two bars, in pixels; a sixth of a bar's column at the usual width.
constexpr int barGap = 2;
/// The minimum height of a bar, even for a ledger without transactions.
constexpr int leastBar = 2;
constexpr double barRadius = 3;
/// The room for the focus ring around a bar, plus a pixel for screens with a fractional device
/// pixel ratio.
constexpr QMargins ringMargins(3, 3, 3, 3);

double largest(const QList<LedgerFeed::Ledger> &ledgers)
{
    const auto *busiest = LedgerTexts::busiest(ledgers);
    return busiest ? double(busiest->txns) : 0;
}

/// Paints a bar that is round at the top and square at the bottom. Only the round part is drawn as
/// a path, which takes far longer than a rectangle. It overlaps the rectangle a little, so that no
/// seam is visible.
void paintBar(QPainter &painter, const QRectF &bar, const QColor &color)
{
    const double round = std::min({barRadius, bar.height(), bar.width() / 2});
    const QSizeF corner(2 * round, 2 * round);
    const double reach = std::min(round + 1, bar.height());
    QPainterPath cap(bar.topLeft() + QPointF(0, reach));
    cap.arcTo(QRectF(bar.topLeft(), corner), 180, -90);
    cap.arcTo(QRectF(QPointF(bar.right() - corner.width(), bar.top()), corner), 90, -90);
    cap.lineTo(bar.topRight() + QPointF(0, reach));
    painter.fillPath(cap, color);
    painter.fillRect(bar.adjusted(0, round, 0, 0), color);
}

} // namespace

LedgerHistogram::LedgerHistogram(const LedgerLook &look, QWidget *parent)
    : LedgerCard(look, QStringLiteral("Transactions per ledger"), parent)
{
    LedgerHistogramAccess::install();
    setMouseTracking(true);
    setFocusPolicy(Qt::TabFocus);
    m_move.setDuration(moveMilliseconds);
    m_move.setEasingCurve(QEasingCurve::OutCubic);
    m_move.setStartValue(0.0);
    m_move.setEndValue(1.0);
    connect(&m_move, &QVariantAnimation::valueChanged, this, [this] { updateChart(); });
    connect(&m_move, &QVariantAnimation::finished, this, &LedgerHistogram::settle);
}

void LedgerHistogram::setLedgers(const QList<LedgerFeed::Ledger> &ledgers)
{
    const bool oneMore = !m_ledgers.isEmpty() && ledgers.size() >= 2
                         && ledgers.at(ledgers.size() - 2) == m_ledgers.last();
    m_largestBefore = largest(m_ledgers);
    const Index current = m_current < 0 ? Index() : m_ledgers.at(m_current).id;
    m_ledgers = ledgers;
    if (current)
        m_current = m_ledgers.isEmpty() ? -1 : std::max<qsizetype>(0, position(*current));
    else if (hasFocus())
        m_current = m_ledgers.size() - 1;
    m_move.stop();
    if (oneMore && !isStill() && isVisible() && !window()->isMinimized())
        m_move.start();
    settle();
    update();
}

/// Updates the hovered bar once the bars have moved or begun to move: the pointer may be over
/// another one.
void LedgerHistogram::settle()
{
    hover(m_pointer ? ledgerAt(*m_pointer) : std::nullopt);
}

void LedgerHistogram::lookChanged()
{
    if (isStill())
        m_move.stop();
    LedgerCard::lookChanged();
    settle();
}

QRect LedgerHistogram::chart() const
{
    QRect chart = content();
    chart.setTop(titleRect().bottom() + 1 + metrics().chartGap);
    return chart;
}

QRect LedgerHistogram::column(qsizetype position) const
{
    // The last bar ends at the chart's edge, so the gap beside it falls outside.
    const double pitch = double(chart().width() + barGap) / LedgerFeed::mostLedgers;
    const double moved =
        m_move.state() == QAbstractAnimation::Running ? 1 - m_move.currentValue().toDouble() : 0;
    const double fromRight = double(m_ledgers.size() - position) - moved;
    const int left = chart().right() + 1 + barGap - qRound(fromRight * pitch);
    const int right = chart().right() + 1 + barGap - qRound((fromRight - 1) * pitch);
    return {left, chart().top(), right - left - barGap, chart().height()};
}

qsizetype LedgerHistogram::position(Index ledger) const
{
    const auto found = std::find_if(m_ledgers.begin(), m_ledgers.end(),
                                    [&](const auto &other) { return other.id == ledger; });
    return found == m_ledgers.end() ? -1 : found - m_ledgers.begin();
}

QRect LedgerHistogram::target(qsizetype position) const
{
    return column(position).adjusted(0, 0, barGap, 0) & chart();
}

LedgerHistogram::Index LedgerHistogram::ledgerAt(const QPoint &point) const
{
    for (qsizetype i = 0; i < m_ledgers.size(); ++i)
        if (target(i).contains(point))
            return m_ledgers.at(i).id;
    return {};
}

qsizetype LedgerHistogram::current() const
{
    return hasFocus() ? m_current : -1;
}

void LedgerHistogram::choose(qsizetype position)
{
    if (position >= 0 && position < m_ledgers.size())
        emit chosen(m_ledgers.at(position).id);
}

void LedgerHistogram::hover(Index ledger)
{
    if (ledger == m_hoveredLedger)
        return;
    updateBar(position(std::exchange(m_hoveredLedger, ledger)));
    updateBar(position(ledger));
    if (ledger)
        setCursor(Qt::PointingHandCursor);
    else
        unsetCursor();
}

/// Repaints a bar and the label.
void LedgerHistogram::updateBar(qsizetype position)
{
    update(visual(titleRect()));
    if (position >= 0)
        update(column(position) + ringMargins);
}

/// Repaints the chart, including the focus ring around a bar.
void LedgerHistogram::updateChart()
{
    update(chart() + ringMargins);
}

void LedgerHistogram::mouseMoveEvent(QMouseEvent *event)
{
    m_pointer = event->position().toPoint();
    hover(ledgerAt(*m_pointer));
}

void LedgerHistogram::leaveEvent(QEvent *)
{
    m_pointer.reset();
    hover({});
}

void LedgerHistogram::mousePressEvent(QMouseEvent *event)
{
    if (event->button() != Qt::LeftButton)
        return;
    m_pressedLedger = ledgerAt(event->position().toPoint());
    if (m_pressedLedger)
        m_pressedTarget = target(position(m_pressedLedger));
}

void LedgerHistogram::mouseReleaseEvent(QMouseEvent *event)
{
    if (event->button() != Qt::LeftButton)
        return;
    // The bars may have moved since the press. A release chooses the pressed ledger both where its
    // bar was then and where it is now.
    const QPoint point = event->position().toPoint();
    const Index pressed = std::exchange(m_pressedLedger, {});
    if (pressed && (m_pressedTarget.contains(point) || pressed == ledgerAt(point)))
        emit chosen(*pressed);
}

void LedgerHistogram::focusInEvent(QFocusEvent *)
{
    if (m_current < 0)
        m_current = m_ledgers.size() - 1;
    updateBar(m_current);
    // After this event, Qt reports that the focus is at the whole list.
    QMetaObject::invokeMethod(
        this, [this] { LedgerHistogramAccess::tellFocus(*this); }, Qt::QueuedConnection);
}

void LedgerHistogram::focusOutEvent(QFocusEvent *)
{
    updateBar(m_current);
}

void LedgerHistogram::stepTo(qsizetype position)
{
    if (m_ledgers.isEmpty())
        return;
    updateBar(std::exchange(m_current, std::clamp<qsizetype>(position, 0, m_ledgers.size() - 1)));
    updateBar(m_current);
    LedgerHistogramAccess::tellFocus(*this);
}

void LedgerHistogram::keyPressEvent(QKeyEvent *event)
{
    switch (event->key()) {
    case Qt::Key_Left:
        return stepTo(m_current - 1);
    case Qt::Key_Right:
        return stepTo(m_current + 1);
    case Qt::Key_Home:
        return stepTo(0);
    case Qt::Key_End:
        return stepTo(m_ledgers.size() - 1);
    case Qt::Key_Return:
    case Qt::Key_Enter:
    case Qt::Key_Space:
        return choose(m_current);
    default:
        LedgerCard::keyPressEvent(event);
    }
}

QString LedgerHistogram::label() const
{
    for (const qsizetype place : {position(m_hoveredLedger), current()})
        if (place >= 0)
            return LedgerTexts::bar(m_ledgers.at(place));
    return LedgerTexts::summary(m_ledgers);
}

void LedgerHistogram::paintEvent(QPaintEvent *event)
{
    QPainter painter(this);
    paintCard(painter, event->rect());
    if (event->rect().intersects(visual(titleRect())))
        m_labelText.draw(painter, visual(besideTitle()), visual(Qt::AlignRight), metrics().caption,
                         colors().ink3, label());
    paintBars(painter, event->rect());
    const double line = DevicePixels::hairline(painter);
    painter.fillRect(QRectF(chart().left(), chart().bottom() + 1 - line, chart().width(), line),
                     isOld() ? colors().ink3 : LedgerDrawing::baseline(colors()));
    paintAverage(painter);
    paintFocus(painter);
}

void LedgerHistogram::paintBars(QPainter &painter, const QRect &area) const
{
    double scale = largest(m_ledgers);
    if (m_move.state() == QAbstractAnimation::Running)
        scale = m_largestBefore + (scale - m_largestBefore) * m_move.currentValue().toDouble();
    const QColor calm = isOld() ? LedgerDrawing::oldBar(colors()) : LedgerDrawing::bar(colors());
    painter.save();
    // While the bars move, the newest slides in from behind the edge.
    painter.setClipRect(chart().adjusted(-barGap, 0, barGap, 0));
    painter.setRenderHint(QPainter::Antialiasing);
    for (qsizetype i = 0; i < m_ledgers.size(); ++i) {
        QRect bar = column(i);
        if (!bar.intersects(area))
            continue;
        const LedgerFeed::Ledger &ledger = m_ledgers.at(i);
        const double share = scale > 0 ? std::min(1.0, double(ledger.txns) / scale) : 0;
        bar.setTop(bar.bottom() + 1 - std::max(leastBar, qRound(share * bar.height())));
        paintBar(painter, DevicePixels::snapped(painter, bar),
                 ledger.id == m_hoveredLedger ? colors().link : calm);
    }
    painter.restore();
}

void LedgerHistogram::paintAverage(QPainter &painter) const
{
    const double most = largest(m_ledgers);
    if (most <= 0)
        return;
    const double thickness = DevicePixels::hairline(painter);
    const double fromTop = (1 - LedgerTexts::average(m_ledgers) / most) * chart().height();
    const QRectF line(chart().left(), chart().top() + std::round(fromTop) - thickness / 2,
                      chart().width(), thickness);
    // On a light card, the warm accent alone is too pale for a thin line. Ink below it darkens it.
    if (!isOld())
        painter.fillRect(line, colors().ink);
    QColor color = isOld() ? colors().ink2 : colors().thread;
    color.setAlphaF(0.8F);
    painter.fillRect(line, color);
}

void LedgerHistogram::paintFocus(QPainter &painter) const
{
    if (current() < 0)
        return;
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setBrush(Qt::NoBrush);
    painter.setPen(QPen(colors().link, 1.5));
    painter.drawRoundedRect(QRectF(column(current())).adjusted(-1, -1, 1, 1), barRadius, barRadius);
}

void LedgerHistogram::resizeEvent(QResizeEvent *)
{
    m_move.stop();
    settle();
}

void LedgerHistogram::hideEvent(QHideEvent *)
{
    m_move.stop();
    settle();
}

} // namespace tidewick
