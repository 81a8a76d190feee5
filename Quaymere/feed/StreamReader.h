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
    /// The latest validated ledger, if there is one.
    std::optional<qint64> ledgerIndex;
};

/// The answer to a request for a past ledger.
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

/// The content of one message of the stream; std::monostate if there is none for the feed.
using StreamMessage = std::variant<std::monostate, SubscribedMessage, BackfillMessage,
                                   LedgerClosedMessage, TransactionMessage>;

/// Reads untrusted messages. Members that are absent, null or of the wrong type all count as
/// missing, as everywhere in the program. So do texts longer than any in the ledger. Keeps its
/// buffers from message to message. Usable from any thread, but only from one at a time.
class StreamReader
{
public:
    /// The ID of the subscription request, and the lowest ID of requests for past ledgers. The ID
    /// of an answer says which request it belongs to.
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
