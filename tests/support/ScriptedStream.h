// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include "feed/LedgerFeed.h"
#include "support/FakeClock.h"

#include <QStringList>

namespace tidewick {

/// The node's side of a feed's connections, and the feed's clock, both under a test's control.
class ScriptedStream
{
public:
    ScriptedStream();

    /// The host for the feed under test, which may outlive this object.
    LedgerFeedHost host() const;

    FakeClock &clock() const;

    /// The number of connection attempts so far.
    int connections() const;

    /// Whether a connection is open or being established.
    bool isOpen() const;

    /// The messages that the feed has sent on its latest connection.
    QStringList sent() const;

    /// Whether the feed has closed its latest connection in an orderly way.
    bool wentAway() const;

    /// Sends a message on the current connection.
    void say(const QString &text) const;

    /// Sends a message announcing a ledger that closed `seconds` after 2000-01-01.
    void close(qint64 index, qint64 txns, qint64 seconds) const;

    /// Sends a message announcing a transaction.
    void
    transact(const QString &hash, const QString &type, qint64 ledger,
             const QString &result = QStringLiteral("tesSUCCESS"),
             const QString &account = QStringLiteral("rHb9CJAWyB4rj91VRWn96DkukG4bwdtyTh")) const;

    /// Makes the current connection fail.
    void fail() const;

private:
    struct State;
    class Socket;

    std::shared_ptr<State> m_state;
};

} // namespace tidewick
