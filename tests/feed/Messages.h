// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include "feed/LedgerFeed.h"

#include <QByteArray>
#include <QStringList>

namespace tidewick {

/// The texts that a real node sent in a recorded session, in their order.
QStringList recordedTexts(const char *file);

/// JSON with single quotes for double ones, to be easier on the eye.
QString json(const char *text);

/// What the feed sends first.
QString subscriptionText();

/// The answer to it, with the newest ledger.
QString subscribedText(qint64 index);

/// The answer to a question for a past ledger, which closed `seconds` after 2000.
QString pastText(qint64 index, qint64 txns, qint64 seconds);

/// The time so many seconds after 2000.
LedgerFeed::Time ledgerTime(double seconds);

QList<qint64> indexes(const LedgerFeed &feed);

/// The whole numbers from the first to the last.
QList<qint64> fromTo(qint64 first, qint64 last);

/// What the reader under test makes of a message.
QString said(const QString &text);

} // namespace tidewick
