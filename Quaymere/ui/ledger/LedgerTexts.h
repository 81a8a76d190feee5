// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include "feed/LedgerFeed.h"

#include <QString>

#include <chrono>

/// The texts of the ledger window, and the values that it derives from the feed's lists.
namespace tidewick::LedgerTexts {

using Ledgers = QList<LedgerFeed::Ledger>;

/// The largest number of types that get a row.
inline constexpr qsizetype mostTypes = 6;

/// The newest ledger; null if there is none.
const LedgerFeed::Ledger *latest(const Ledgers &ledgers);

/// The ledger with the most transactions, or the earliest of several; null if there is none.
const LedgerFeed::Ledger *busiest(const Ledgers &ledgers);

/// The average number of transactions per ledger; 0 without ledgers.
double average(const Ledgers &ledgers);

/// The index of the newest ledger, or a placeholder.
QString latestIndex(const Ledgers &ledgers);

/// A tile's text for a number or rate; a dash if there is none.
QString figure(std::optional<qint64> number);
QString rate(std::optional<double> perSecond);

QString status(bool connected);

/// How long ago the newest ledger arrived, in the largest whole unit.
QString age(std::chrono::seconds since);

/// The accessible description of figures that are no longer current.
QString oldFigures();

/// The text below the figure of the busiest ledger's tile; empty without ledgers.
QString busiestIndex(const Ledgers &ledgers);

/// A text as wide as busiestIndex() for any ledger index for decades to come.
QString longestTileText();

/// The label above the bars for the bar under the pointer or the keyboard focus, and otherwise for
/// all of them; empty without bars.
QString bar(const LedgerFeed::Ledger &ledger);
QString summary(const Ledgers &ledgers);

/// The accessible name of a bar.
QString barName(const LedgerFeed::Ledger &ledger);

/// The placeholder for types or transactions.
QString waiting();

/// The line that stands for the types without a row; empty if all types have one.
QString moreTypes(qsizetype types);

/// The account, elided in the middle if it is long.
QString account(const QString &account);

/// The accessible name of a transaction's row, with the whole account.
QString rowName(const LedgerFeed::Tx &tx);

QString footnote();
/// The same text with one sentence per line.
QString footnoteOnTwoLines();

} // namespace tidewick::LedgerTexts
