// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QFont>
#include <QSize>

namespace tidewick {

/// The ledger window's measures, in pixels at device pixel ratio 1. They follow the window's font,
/// and become tighter in a low window so that everything still fits. In a high one, the chart and
/// the list grow.
class LedgerMetrics
{
public:
    /// Computes the measures for a window of this size.
    LedgerMetrics(const QFont &base, const QSize &window);

    /// The minimum width at which texts fit beside each other.
    static int leastWidth(const QFont &base);

    /// The minimum height that shows everything, including two transactions.
    static int leastHeight(const QFont &base);

    /// "LIVE LEDGER"
    QFont eyebrow;
    QFont heading;
    QFont headingNumber;
    /// The texts around figures, and the footnote.
    QFont caption;
    QFont figure;
    QFont cardTitle;
    QFont body;
    /// Result codes.
    QFont code;

    /// From the window's edge to the cards, and between cards.
    int side;
    int top;
    int gap;
    /// Below the footnote.
    int bottom;
    /// Cards wider than this would be hard to read across.
    int mostWidth;

    int radius;
    /// From a card's edge to its text.
    int cardSide;
    int cardTop;
    /// Between a card's title and its content.
    int titleGap;

    int header;
    /// Below the header.
    int headerGap;
    int tile;
    /// From a tile's edge to its text.
    int tileTop;
    int chart;
    /// Between the histogram's title and its highest bar.
    int chartGap;
    int typeRow;
    int txRow;
    /// From a card's edge to the list in it, so that the list's corners stay within the card's
    /// rounded ones.
    int listMargin;
    int footnote;

    /// The square that shows a type's colour, the space to its right, and its corners.
    int mark;
    int markGap;
    int markRadius;
    /// From the start of a row's mark to the content after the type's name.
    int nameColumn;
    /// Before the bar that shows a type's share, in addition.
    int trackGap;
    /// The width of a row at the window's usual width. A wider row spreads its columns.
    int usualRow;
    /// Wide enough for accounts, whether shortened or short enough to stay whole.
    int accountColumn;

    int cardHeight(int content) const;
    int chartCard() const;

private:
    /// `loose` is 1 for the usual spacing and 0 for the tightest.
    LedgerMetrics(const QFont &base, double loose, int windowWidth);

    int windowHeight(double transactions) const;
};

} // namespace tidewick
