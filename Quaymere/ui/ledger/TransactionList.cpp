// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "ui/ledger/TransactionList.h"

#include "ui/ledger/LedgerDrawing.h"
#include "ui/ledger/TransactionDelegate.h"

#include <QAccessible>
#include <QMouseEvent>
#include <QScrollBar>

namespace tidewick {

namespace {

constexpr int moveMilliseconds = 160;

/// A slim scroll bar without arrows, in the window's colours, whatever the desktop's style.
QString scrollBarStyle(const QColor &handle)
{
    return QStringLiteral("QScrollBar:vertical { background: transparent; width: 8px; margin: 0; }"
                          "QScrollBar::handle:vertical { background: %1; border-radius: 3px;"
                          " min-height: 24px; margin: 0 1px; }"
                          "QScrollBar::add-line, QScrollBar::sub-line { height: 0; }"
                          "QScrollBar::add-page, QScrollBar::sub-page { background: none; }")
        .arg(handle.name());
}

} // namespace

TransactionList::TransactionList(const LedgerLook &look, QWidget *parent)
    : QListView(parent), m_look(look), m_model(new TransactionModel(this)),
      m_delegate(new TransactionDelegate(look, this))
{
    setModel(m_model);
    setItemDelegate(m_delegate);
    setAccessibleName(QStringLiteral("Latest transactions"));
    setFrameShape(QFrame::NoFrame);
    setUniformItemSizes(true);
    setVerticalScrollMode(ScrollPerPixel);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setSelectionMode(NoSelection);
    setEditTriggers(NoEditTriggers);
    // Otherwise a click on a row at the edge would scroll it fully into view, away from the
    // pointer.
    setAutoScroll(false);
    setMouseTracking(true);
    setFocusPolicy(Qt::TabFocus);

    connect(this, &QListView::clicked, this,
            [this](const QModelIndex &index) { emit chosen(row(index).hash); });
    connect(verticalScrollBar(), &QScrollBar::valueChanged, this, &TransactionList::hoverAnew);
    connect(verticalScrollBar(), &QScrollBar::actionTriggered, this,
            &TransactionList::scrolledByHand);
    m_move.setDuration(moveMilliseconds);
    m_move.setEasingCurve(QEasingCurve::OutCubic);
    m_move.setEndValue(0);
    connect(&m_move, &QVariantAnimation::valueChanged, this,
            [this](const QVariant &value) { verticalScrollBar()->setValue(value.toInt()); });
    lookChanged();
}

void TransactionList::lookChanged()
{
    const QString style =
        scrollBarStyle(LedgerDrawing::mixed(m_look.colors.surface, m_look.colors.ink3, 0.45F));
    // Applying a style sheet is slow, and the look changes at every step of a resize.
    if (style != verticalScrollBar()->styleSheet())
        verticalScrollBar()->setStyleSheet(style);
    if (m_look.still)
        endMove();
    m_delegate->lookChanged();
    scheduleDelayedItemsLayout();
    viewport()->update();
}

void TransactionList::setTransactions(const QList<LedgerFeed::Tx> &txs, qsizetype arrived)
{
    m_unseen = std::min(txs.size(), m_unseen + arrived);
    m_waiting = txs;
    if (!shownCurrent().isValid() || shownCurrent().row() < txs.size() - m_unseen)
        showWaiting();
}

void TransactionList::showWaiting()
{
    const qsizetype arrived = std::exchange(m_unseen, 0);
    const int before = verticalScrollBar()->value();
    m_isChanging = true;
    m_model->setTransactions(std::exchange(m_waiting, {}), arrived);
    executeDelayedItemsLayout();
    const int added = int(arrived) * m_look.metrics.txRow;
    m_move.stop();
    if (!m_followsNewest || isHeld())
        verticalScrollBar()->setValue(before + added);
    else if (before + added < viewport()->height())
        moveToTop(before + added);
    else
        verticalScrollBar()->setValue(0); // no visible row stays visible
    hoverAnew();
    if (hasFocus() && !currentIndex().isValid())
        setCurrentIndex(indexAt({0, 0}));
    m_isChanging = false;
}

bool TransactionList::isHeld() const
{
    return m_hovered.isValid() || shownCurrent().isValid();
}

/// Runs before the scroll bar's value changes, and only for the user's own actions.
void TransactionList::scrolledByHand()
{
    m_move.stop();
    m_followsNewest = verticalScrollBar()->sliderPosition() == 0;
}

void TransactionList::moveToTop(int from)
{
    m_move.stop();
    const bool isSeen = isVisible() && !window()->isMinimized();
    verticalScrollBar()->setValue(isSeen && !m_look.still ? from : 0);
    if (verticalScrollBar()->value() == 0)
        return;
    m_move.setStartValue(verticalScrollBar()->value());
    m_move.start();
}

/// Skips to the end of a running move.
void TransactionList::endMove()
{
    if (m_move.state() != QAbstractAnimation::Running)
        return;
    m_move.stop();
    verticalScrollBar()->setValue(0);
}

QModelIndex TransactionList::shownCurrent() const
{
    return hasFocus() && m_usesKeyboard ? currentIndex() : QModelIndex();
}

bool TransactionList::viewportEvent(QEvent *event)
{
    switch (event->type()) {
    case QEvent::MouseMove:
        m_pointer = static_cast<QMouseEvent *>(event)->position().toPoint();
        hoverAnew();
        break;
    case QEvent::Leave:
        m_pointer.reset();
        hoverAnew();
        if (m_followsNewest && !isHeld())
            moveToTop(verticalScrollBar()->value());
        break;
    default:
        break;
    }
    return QListView::viewportEvent(event);
}

void TransactionList::hoverAnew()
{
    const QModelIndex hovered = m_pointer ? indexAt(*m_pointer) : QModelIndex();
    if (hovered == m_hovered)
        return;
    update(m_hovered);
    update(hovered);
    m_hovered = hovered;
    if (hovered.isValid())
        viewport()->setCursor(Qt::PointingHandCursor);
    else
        viewport()->unsetCursor();
}

/// When the current row is among those that drop out, a row nearby takes its place. On a busy
/// ledger that happens twice a second, and a screen reader would do nothing but read rows aloud.
void TransactionList::currentChanged(const QModelIndex &current, const QModelIndex &previous)
{
    // QListView's function tells screen readers, too.
    if (m_isChanging) // NOLINTNEXTLINE(bugprone-parent-virtual-call)
        QAbstractItemView::currentChanged(current, previous);
    else
        QListView::currentChanged(current, previous);
}

void TransactionList::tellCurrent()
{
    if (!QAccessible::isActive() || !hasFocus() || !currentIndex().isValid())
        return;
    QAccessibleEvent event(this, QAccessible::Focus);
    event.setChild(currentIndex().row());
    QAccessible::updateAccessibility(&event);
}

void TransactionList::resizeEvent(QResizeEvent *event)
{
    QListView::resizeEvent(event);
    hoverAnew();
}

void TransactionList::hideEvent(QHideEvent *event)
{
    QListView::hideEvent(event);
    endMove();
}

void TransactionList::mousePressEvent(QMouseEvent *event)
{
    m_usesKeyboard = false;
    update(currentIndex());
    QListView::mousePressEvent(event);
}

void TransactionList::keyPressEvent(QKeyEvent *event)
{
    const bool chooses = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter
                         || event->key() == Qt::Key_Space;
    if (chooses) {
        if (const QModelIndex current = shownCurrent(); current.isValid())
            emit chosen(row(current).hash);
        return;
    }
    const QModelIndex before = currentIndex();
    QListView::keyPressEvent(event);
    if (currentIndex() == before)
        return;
    m_usesKeyboard = true;
    m_move.stop();
    const int place = verticalScrollBar()->value();
    scrollTo(currentIndex());
    if (verticalScrollBar()->value() != place)
        m_followsNewest = verticalScrollBar()->value() == 0;
    update(before);
}

void TransactionList::focusInEvent(QFocusEvent *event)
{
    // The mouse does not give the focus to the list. When the focus returns with the window,
    // nothing changes.
    const bool isBack =
        event->reason() == Qt::ActiveWindowFocusReason || event->reason() == Qt::PopupFocusReason;
    if (!isBack) {
        m_usesKeyboard = true;
        if (!viewport()->rect().intersects(visualRect(currentIndex())))
            setCurrentIndex(indexAt({0, 0}));
        // The row at the edge may be visible by just a pixel.
        scrollTo(currentIndex());
    }
    QListView::focusInEvent(event);
    update(currentIndex());
    // After this event, Qt reports that the focus is at the whole list.
    QMetaObject::invokeMethod(
        this, [this] { tellCurrent(); }, Qt::QueuedConnection);
}

void TransactionList::focusOutEvent(QFocusEvent *event)
{
    QListView::focusOutEvent(event);
    update(currentIndex());
    if (m_unseen > 0)
        showWaiting();
    if (m_followsNewest && !isHeld())
        moveToTop(verticalScrollBar()->value());
}

} // namespace tidewick
