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

/// A ledger window on the screen, active, with the node's side of its stream in the test's hands.
/// Nothing in it moves by itself until a test lets it.
class LedgerRig
{
public:
    explicit LedgerRig(QSize size = {800, 780});

    /// Closes a ledger with so many transactions, the next by its index and four seconds later.
    void close(qint64 txns);
    void close(std::initializer_list<qint64> txns);
    /// So many ledgers with 210, 220, … transactions.
    void closeMany(int ledgers);
    /// Closes 60 ledgers, with transactions of more types than have a place of their own, and one
    /// more.
    void fill();

    /// Lists so many transactions, numbered on; the last has the name nameOf(transactions() - 1).
    void transact(int count);
    /// Lists one.
    void
    transact(const QString &hash, const QString &type,
             const QString &result = QStringLiteral("tesSUCCESS"),
             const QString &account = QStringLiteral("rHb9CJAWyB4rj91VRWn96DkukG4bwdtyTh")) const;
    static QString nameOf(int transaction) { return QStringLiteral("T%1").arg(transaction); }
    int transactions() const { return m_transactions; }

    /// Time in which what waits in the feed gets into the lists.
    void flush() const { stream.clock().advance(std::chrono::milliseconds(400)); }

    LedgerHistogram &histogram() const { return *window.findChild<LedgerHistogram *>(); }
    TransactionList &list() const { return *window.findChild<TransactionList *>(); }
    QWidget &named(const char *accessibleName) const;

    /// The middle of the bar at that place, in the window.
    QPoint bar(qsizetype place) const;
    /// The middle of the row at that place, in the window, in sight or not.
    QPoint row(int place) const;
    /// The hash of the row that is seen at that point of the window; empty where there is none.
    QString hashAt(const QPoint &point) const;

    void pointAt(const QPoint &point);
    void press(const QPoint &point);
    void release(const QPoint &point);
    void click(const QPoint &point);
    void key(Qt::Key key);

    /// What is on the screen, drawn piece by piece as it changed.
    QImage screen() const;

    ScriptedStream stream;
    QStringList opened;
    /// What the desktop answers.
    bool opens = true;
    LedgerWindow window;

    static constexpr qint64 firstLedger = 98'765'001;

private:
    qint64 m_ledgers = 0;
    int m_transactions = 0;
};

/// Counts the events of one kind that come to an object; where there is none, to any.
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
