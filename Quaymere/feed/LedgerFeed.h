// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include "feed/TypesByLedger.h"
#include "platform/time/Clock.h"

#include <QList>
#include <QObject>

#include <chrono>
#include <functional>
#include <memory>
#include <optional>

namespace tidewick {

class StreamReader;
class StreamSocket;

/// The feed's access to the host. Real by default; a test substitutes its own.
struct LedgerFeedHost
{
    std::shared_ptr<Clock> clock = std::make_shared<SystemClock>();
    /// A new connection to the node's stream.
    std::function<std::unique_ptr<StreamSocket>()> connect;

    LedgerFeedHost();
};

/// The ledgers and transactions that the node's stream reports, in short lists for a window. Owned
/// by that window; main thread only. When started, it connects, subscribes and backfills the
/// ledgers that closed before. If a connection fails or ends, it reconnects after 3 s, as often as
/// necessary. When stopped, it keeps its lists, and continues from them if it is started again.
///
/// Its memory use is bounded whatever the stream sends: 60 ledgers, 40 listed transactions and as
/// many waiting to be listed, and the counts in TypesByLedger within their own limits.
class LedgerFeed final : public QObject
{
    Q_OBJECT

public:
    /// Unix time. Close times are whole seconds, but a message may contain any number.
    using Time = std::chrono::sys_time<std::chrono::duration<double>>;

    struct Ledger
    {
        /// The ledger index.
        qint64 id = 0;
        /// The number of transactions in the ledger.
        qint64 txns = 0;
        Time closed;

        bool operator==(const Ledger &) const = default;
    };

    struct Tx
    {
        /// The transaction's hash.
        QString id;
        /// "Payment" and so on; "Unknown" if the message does not say.
        QString type;
        /// The sending account; may be empty.
        QString account;
        /// "tesSUCCESS" and so on; may be empty.
        QString result;
        /// Index of the ledger that holds it.
        qint64 ledger = 0;

        bool operator==(const Tx &) const = default;
    };

    using TypeCount = TypesByLedger::TypeCount;

    static constexpr qsizetype mostLedgers = 60;
    static constexpr qsizetype mostTxs = 40;

    explicit LedgerFeed(LedgerFeedHost host = {}, QObject *parent = nullptr);
    ~LedgerFeed() override;

    void start();
    void stop();
    bool running() const { return m_running; }

    /// Closed ledgers, oldest first.
    const QList<Ledger> &ledgers() const { return m_ledgers; }

    /// The latest transactions, newest first.
    const QList<Tx> &txs() const { return m_txs; }

    /// How many transactions of each type were seen live in the kept ledgers, most first.
    const QList<TypeCount> &types() const { return m_types; }

    /// Whether a message has arrived on the current connection.
    bool connected() const { return m_connected; }

    /// Transactions per second over the kept ledgers; nothing if these do not yield a rate.
    std::optional<double> txRate() const;

    /// Handles one message of the stream. Ignores messages that make no sense.
    void handle(const QString &text);

signals:
    void ledgersChanged();
    /// The first `arrived` transactions of the list are new.
    void txsChanged(qsizetype arrived);
    void typesChanged();
    void connectedChanged();

private:
    void connectToNode();
    void letGoOfSocket();
    void reconnectLater();
    void setConnected(bool connected);

    void backfill(qint64 below);
    void addBackfilled(const Ledger &ledger);
    void addClosed(const Ledger &ledger);
    void addTransaction(Tx tx);
    void trimLedgers();

    void flushLater();
    void flush();

    LedgerFeedHost m_host;
    std::unique_ptr<StreamReader> m_reader;
    std::unique_ptr<StreamSocket> m_socket;
    std::unique_ptr<Alarm> m_reconnect;
    bool m_running = false;
    bool m_connected = false;
    /// Whether the backfill has been requested on the current connection.
    bool m_backfilled = false;

    QList<Ledger> m_ledgers;
    QList<Tx> m_txs;
    QList<TypeCount> m_types;
    TypesByLedger m_typesByLedger;

    /// Transactions since the last flush, oldest first. Only the latest are kept, as many as the
    /// list holds.
    QList<Tx> m_pending;
    /// Flushes happen at whole multiples of their interval after this time.
    ContinuousClock::time_point m_started;
    /// Set while transactions are pending and the feed is running.
    std::unique_ptr<Alarm> m_flusher;
};

} // namespace tidewick
