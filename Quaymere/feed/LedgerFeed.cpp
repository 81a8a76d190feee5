// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "feed/LedgerFeed.h"

#include "feed/NodeStream.h"
#include "feed/StreamReader.h"

#include <algorithm>
#include <cmath>

namespace tidewick {

namespace {

using namespace std::chrono_literals;

constexpr auto flushInterval = 400ms;
constexpr auto reconnectDelay = 3s;

/// One less than the list holds, which leaves room for the next ledger to close.
constexpr qint64 backfilledLedgers = LedgerFeed::mostLedgers - 1;

const QString subscription =
    QStringLiteral(R"({"id":1,"command":"subscribe","streams":["ledger","transactions"]})");

bool isOlder(const LedgerFeed::Ledger &a, const LedgerFeed::Ledger &b)
{
    return a.id < b.id;
}

} // namespace

LedgerFeedHost::LedgerFeedHost() : connect([] { return std::make_unique<NodeStream>(); }) {}

LedgerFeed::LedgerFeed(LedgerFeedHost host, QObject *parent)
    : QObject(parent), m_host(std::move(host)), m_reader(std::make_unique<StreamReader>())
{
}

LedgerFeed::~LedgerFeed() = default;

void LedgerFeed::start()
{
    if (m_running)
        return;
    m_running = true;
    m_started = m_host.clock->continuousNow();
    connectToNode();
    if (!m_pending.isEmpty())
        flushLater();
}

void LedgerFeed::stop()
{
    m_running = false;
    m_flusher.reset();
    m_reconnect.reset();
    if (m_socket)
        m_socket->goAway();
    letGoOfSocket();
    setConnected(false);
}

void LedgerFeed::connectToNode()
{
    if (!m_running || m_socket)
        return;
    m_socket = m_host.connect();
    m_backfilled = false;
    connect(m_socket.get(), &StreamSocket::received, this, [this](const QString &text) {
        const StreamSocket *socket = m_socket.get();
        setConnected(true);
        // A slot may have stopped the feed, and started it again.
        if (socket == m_socket.get())
            handle(text);
    });
    connect(m_socket.get(), &StreamSocket::failed, this, &LedgerFeed::reconnectLater);
    m_socket->send(subscription);
}

/// Deletes the socket later, because it may be emitting a signal now.
void LedgerFeed::letGoOfSocket()
{
    if (!m_socket)
        return;
    m_socket->disconnect(this);
    m_socket.release()->deleteLater();
}

void LedgerFeed::reconnectLater()
{
    letGoOfSocket();
    m_reconnect = m_host.clock->alarm(m_host.clock->continuousNow() + reconnectDelay,
                                      [this] { connectToNode(); });
    setConnected(false);
}

void LedgerFeed::setConnected(bool connected)
{
    if (std::exchange(m_connected, connected) != connected)
        emit connectedChanged();
}

void LedgerFeed::handle(const QString &text)
{
    StreamMessage message = m_reader->read(text);
    if (const auto *subscribed = std::get_if<SubscribedMessage>(&message)) {
        if (subscribed->ledgerIndex)
            backfill(*subscribed->ledgerIndex);
    } else if (const auto *backfilled = std::get_if<BackfillMessage>(&message)) {
        addBackfilled(backfilled->ledger);
    } else if (const auto *closed = std::get_if<LedgerClosedMessage>(&message)) {
        addClosed(closed->ledger);
    } else if (auto *transaction = std::get_if<TransactionMessage>(&message)) {
        addTransaction(std::move(transaction->tx));
    }
}

/// Runs once per connection, even if the node repeats its answer.
void LedgerFeed::backfill(qint64 below)
{
    if (!m_socket || std::exchange(m_backfilled, true))
        return;
    for (qint64 k = 1; k <= backfilledLedgers; ++k) {
        qint64 index = 0;
        if (qSubOverflow(below, k, &index))
            return;
        m_socket->send(
            QStringLiteral(R"({"id":%1,"command":"ledger","ledger_index":%2,"transactions":true})")
                .arg(StreamReader::firstBackfillId + k)
                .arg(index));
    }
}

/// Answers arrive in any order, even for ledgers whose close has been seen.
void LedgerFeed::addBackfilled(const Ledger &ledger)
{
    const bool known = std::any_of(m_ledgers.cbegin(), m_ledgers.cend(),
                                   [&](const Ledger &other) { return other.id == ledger.id; });
    if (known)
        return;
    const QList<Ledger> before = m_ledgers;
    m_ledgers.append(ledger);
    std::stable_sort(m_ledgers.begin(), m_ledgers.end(), isOlder);
    trimLedgers();
    if (m_ledgers != before)
        emit ledgersChanged();
}

void LedgerFeed::addClosed(const Ledger &ledger)
{
    m_ledgers.append(ledger);
    trimLedgers();
    m_typesByLedger.keepIf([this](qint64 index) {
        return std::any_of(m_ledgers.cbegin(), m_ledgers.cend(),
                           [index](const Ledger &kept) { return kept.id == index; });
    });
    const QList<TypeCount> before = std::exchange(m_types, m_typesByLedger.totals());
    emit ledgersChanged();
    if (m_types != before)
        emit typesChanged();
}

void LedgerFeed::trimLedgers()
{
    if (m_ledgers.size() > mostLedgers)
        m_ledgers.remove(0, m_ledgers.size() - mostLedgers);
}

void LedgerFeed::addTransaction(Tx tx)
{
    m_typesByLedger.add(tx.ledger, tx.type);
    if (m_pending.size() == mostTxs)
        m_pending.removeFirst();
    m_pending.append(std::move(tx));
    if (!m_flusher && m_running)
        flushLater();
}

void LedgerFeed::flushLater()
{
    const auto now = m_host.clock->continuousNow();
    const auto passed = (now - m_started) / flushInterval;
    m_flusher = m_host.clock->alarm(m_started + (passed + 1) * flushInterval, [this] { flush(); });
}

void LedgerFeed::flush()
{
    m_flusher.reset();
    const qsizetype arrived = m_pending.size();
    QList<Tx> txs(std::make_move_iterator(m_pending.rbegin()),
                  std::make_move_iterator(m_pending.rend()));
    m_pending.clear();
    txs.append(m_txs.first(std::min(m_txs.size(), mostTxs - arrived)));
    m_txs = std::move(txs);
    emit txsChanged(arrived);
}

std::optional<double> LedgerFeed::txRate() const
{
    if (m_ledgers.isEmpty())
        return std::nullopt;
    const double span = (m_ledgers.last().closed - m_ledgers.first().closed).count();
    if (!(span > 0) || !std::isfinite(span))
        return std::nullopt;
    // The transactions of the first ledger precede the span, which begins at its close.
    double sum = 0;
    for (const Ledger &ledger : m_ledgers.sliced(1))
        sum += double(ledger.txns);
    return sum / span;
}

} // namespace tidewick
