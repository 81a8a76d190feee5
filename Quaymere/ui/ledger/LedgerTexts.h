// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include "feed/LedgerFeed.h"

#include <QString>

/// What the ledger window says, and what it derives from the feed's lists.
namespace tidewick::LedgerTexts {

using Ledgers = QList<LedgerFeed::Ledger>;

/// At most so many types have a row.
inline constexpr qsizetype mostTypes = 6;

/// The newest ledger; null where there is none.
const LedgerFeed::Ledger *latest(const Ledgers &ledgers);

/// The one with the most transactions, of several the earliest; null where there is none.
const LedgerFeed::Ledger *busiest(const Ledgers &ledgers);

/// Transactions per ledger; 0 where there is none.
double average(const Ledgers &ledgers);

/// The index of the newest ledger, or what is shown instead.
QString latestIndex(const Ledgers &ledgers);

/// What a tile shows for a number.
QString figure(std::optional<qint64> number);
QString rate(std::optional<double> perSecond);

QString status(bool connected);

/// Beneath the figure of the tile that names the busiest ledger; empty where there is none.
QString busiestIndex(const Ledgers &ledgers);

/// As wide as what is there with any index of the next decades.
QString longestTileText();

/// Above the bars while one is pointed at, and while none is; empty where there are none.
QString bar(const LedgerFeed::Ledger &ledger);
QString summary(const Ledgers &ledgers);

/// The bar's name to assistive software.
QString barName(const LedgerFeed::Ledger &ledger);

/// Where types or transactions will be.
QString waiting();

/// The line that stands for the types without a row; empty when all have one.
QString moreTypes(qsizetype types);

/// The account, shortened in the middle when it is long.
QString account(const QString &account);

/// The row's name to assistive software, with the whole account.
QString rowName(const LedgerFeed::Tx &tx);

QString footnote();
/// The same, a sentence to each line.
QString footnoteOnTwoLines();

} // namespace tidewick::LedgerTexts
