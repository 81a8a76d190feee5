// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include "feed/LedgerFeed.h"

#include <QByteArray>
#include <QStringList>

namespace tidewick {

/// The texts sent by a real node in a recorded session, in order.
QStringList recordedTexts(const char *file);

/// Converts JSON written with single quotes, which is easier to read, to double quotes.
QString json(const char *text);

/// The subscription request that the feed sends first.
QString subscriptionText();

/// The response to the subscription, with the index of the newest ledger.
QString subscribedText(qint64 index);

/// The response to a request for a past ledger that closed `seconds` after 2000-01-01.
QString pastText(qint64 index, qint64 txns, qint64 seconds);

/// The time that many seconds after 2000-01-01.
LedgerFeed::Time ledgerTime(double seconds);

QList<qint64> indexes(const LedgerFeed &feed);

/// All integers from the first to the last, inclusive.
QList<qint64> fromTo(qint64 first, qint64 last);

/// The reading of a message by the reader under test, as described() formats it.
QString said(const QString &text);

} // namespace tidewick
