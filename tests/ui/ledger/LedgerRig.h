// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include "support/ScriptedStream.h"
#include "ui/ledger/LedgerHistogram.h"
#include "ui/ledger/LedgerWindow.h"
#include "ui/ledger/TransactionList.h"

#include <QEvent>
#include <QImage>

namespace tidewick {

/// An active ledger window on the screen. The test plays the node's side of its stream. Animations
/// are off until a test turns them on.
class LedgerRig
{
public:
    explicit LedgerRig(QSize size = {800, 780});

    /// Closes the next ledger, four seconds after the last one, with this number of transactions.
    void close(qint64 txns);
    void close(std::initializer_list<qint64> txns);
    /// Closes this number of ledgers, with 210, 220, … transactions.
    void closeMany(int ledgers);
    /// Closes 60 ledgers, lists transactions of more types than the window shows separately, and
    /// closes one more ledger.
    void fill();

    /// Lists this number of transactions, numbered consecutively across calls. The hash of the last
    /// one is nameOf(transactions() - 1).
    void transact(int count);
    /// Lists a single transaction.
    void
    transact(const QString &hash, const QString &type,
             const QString &result = QStringLiteral("tesSUCCESS"),
             const QString &account = QStringLiteral("rHb9CJAWyB4rj91VRWn96DkukG4bwdtyTh")) const;
    static QString nameOf(int transaction) { return QStringLiteral("T%1").arg(transaction); }
    int transactions() const { return m_transactions; }

    /// Advances the clock until the lists show what is pending in the feed.
    void flush() const { stream.clock().advance(std::chrono::milliseconds(400)); }

    LedgerHistogram &histogram() const { return *window.findChild<LedgerHistogram *>(); }
    TransactionList &list() const { return *window.findChild<TransactionList *>(); }
    QWidget &named(const char *accessibleName) const;

    /// The centre of the bar at that index, in window coordinates.
    QPoint bar(qsizetype place) const;
    /// The centre of the row at that index, in window coordinates, whether visible or not.
    QPoint row(int place) const;
    /// The hash of the row at that point of the window; empty if there is none.
    QString hashAt(const QPoint &point) const;

    void pointAt(const QPoint &point);
    void press(const QPoint &point);
    void release(const QPoint &point);
    void click(const QPoint &point);
    void key(Qt::Key key);

    /// The window as it is on the screen, the result of its partial repaints.
    QImage screen() const;

    ScriptedStream stream;
    QStringList opened;
    /// Whether the desktop opens pages.
    bool opens = true;
    LedgerWindow window;

    static constexpr qint64 firstLedger = 98'765'001;

private:
    qint64 m_ledgers = 0;
    int m_transactions = 0;
};

/// Counts the events of one type that an object receives, or any object if the pointer is null.
class EventCount final : public QObject
{
public:
    EventCount(QObject *watched, QEvent::Type type);

    int count() const { return m_count; }
    void reset() { m_count = 0; }

protected:
    bool eventFilter(QObject *object, QEvent *event) override;

private:
    QEvent::Type m_type;
    int m_count = 0;
};

} // namespace tidewick
