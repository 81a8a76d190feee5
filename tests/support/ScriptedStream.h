// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include "feed/LedgerFeed.h"
#include "support/FakeClock.h"

#include <QStringList>

namespace tidewick {

/// The node's side of a feed's connections, in a test's hands, and the time the feed lives by.
class ScriptedStream
{
public:
    ScriptedStream();

    /// For the feed under test, which may outlive this.
    LedgerFeedHost host() const;

    FakeClock &clock() const;

    /// Attempts to connect so far.
    int connections() const;

    /// A connection stands, or is being made.
    bool isOpen() const;

    /// What the feed sent on its latest connection.
    QStringList sent() const;

    /// The feed took its leave from the latest connection.
    bool wentAway() const;

    /// Sends a message on the current connection.
    void say(const QString &text) const;

    /// The same, with a ledger that closes `seconds` after 2000.
    void close(qint64 index, qint64 txns, qint64 seconds) const;

    /// The same, with a transaction.
    void
    transact(const QString &hash, const QString &type, qint64 ledger,
             const QString &result = QStringLiteral("tesSUCCESS"),
             const QString &account = QStringLiteral("rHb9CJAWyB4rj91VRWn96DkukG4bwdtyTh")) const;

    /// Ends the current connection.
    void fail() const;

private:
    struct State;
    class Socket;

    std::shared_ptr<State> m_state;
};

} // namespace tidewick
