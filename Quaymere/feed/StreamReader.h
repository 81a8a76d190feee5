// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include "feed/LedgerFeed.h"

#include <memory>
#include <optional>
#include <variant>

namespace tidewick {

/// The answer to the subscription.
struct SubscribedMessage
{
    /// The newest validated ledger, where there is one.
    std::optional<qint64> ledgerIndex;
};

/// The answer to a request for a ledger of the past.
struct BackfillMessage
{
    LedgerFeed::Ledger ledger;
};

struct LedgerClosedMessage
{
    LedgerFeed::Ledger ledger;
};

struct TransactionMessage
{
    LedgerFeed::Tx tx;
};

/// What one message of the stream says; std::monostate: nothing for the feed.
using StreamMessage = std::variant<std::monostate, SubscribedMessage, BackfillMessage,
                                   LedgerClosedMessage, TransactionMessage>;

/// Reads messages that nobody vouches for. Members that are absent, null or of the wrong type are
/// the same "nothing", as everywhere in the program; so are texts longer than the ledger knows any.
/// Keeps its buffers from message to message. Any thread, one at a time.
class StreamReader
{
public:
    /// The id of the request that subscribes. Requests for past ledgers have ids from the second
    /// value on. Answers are told apart by them.
    static constexpr qint64 subscriptionId = 1;
    static constexpr qint64 firstBackfillId = 1000;

    StreamReader();
    StreamReader(const StreamReader &) = delete;
    StreamReader &operator=(const StreamReader &) = delete;
    ~StreamReader();

    StreamMessage read(QStringView text);

private:
    struct Parser;

    std::unique_ptr<Parser> m_parser;
};

} // namespace tidewick
