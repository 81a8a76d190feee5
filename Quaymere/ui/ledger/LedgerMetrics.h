// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QFont>

namespace tidewick {

/// The ledger window's measures, in pixels of a screen of ratio 1. They follow the window's font,
/// and in a low window they draw together so that everything keeps its place.
class LedgerMetrics
{
public:
    /// For a window of that height.
    LedgerMetrics(const QFont &base, int windowHeight);

    /// The least width in which texts have room beside each other.
    static int leastWidth(const QFont &base);

    /// The least height that shows everything, with two transactions.
    static int leastHeight(const QFont &base);

    /// "LIVE LEDGER"
    QFont eyebrow;
    QFont heading;
    QFont headingNumber;
    /// What stands around figures, and the footnote.
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
    /// Cards wider than this would be hard to read across.
    int mostWidth;

    int radius;
    /// From a card's edge to its text.
    int cardSide;
    int cardTop;
    /// Between a card's title and what is below it.
    int titleGap;

    int header;
    /// Below the header.
    int headerGap;
    int tile;
    /// From a tile's edge to its text.
    int tileTop;
    int chart;
    int typeRow;
    int txRow;
    /// From a card's edge to the list in it, so that its corners stay within the card's round ones.
    int listMargin;
    int footnote;

    /// The square that shows a type's colour, the space to its right, and its corners.
    int mark;
    int markGap;
    int markRadius;
    /// From a row's mark to what follows the type's name.
    int nameColumn;
    /// Wide enough for accounts that are not shortened, and for those that are.
    int accountColumn;

    int cardHeight(int content) const;

private:
    /// Loose: 1, drawn together: 0.
    LedgerMetrics(const QFont &base, double loose);

    int windowHeight(double transactions) const;
};

} // namespace tidewick
