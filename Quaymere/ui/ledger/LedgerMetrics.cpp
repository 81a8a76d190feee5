// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "ui/ledger/LedgerMetrics.h"

#include "feed/LedgerFeed.h"
#include "ui/controls/TextScale.h"
#include "ui/ledger/LedgerTexts.h"

#include <QFontDatabase>
#include <QFontInfo>
#include <QFontMetrics>

#include <cmath>

namespace tidewick {

namespace {

/// The number of transactions visible in a low window and in one with room to spare.
constexpr double fewTransactions = 2;
constexpr double usualTransactions = 3.7;

QFont strong(QFont font)
{
    font.setWeight(QFont::DemiBold);
    return font;
}

QFont spaced(QFont font)
{
    font.setLetterSpacing(QFont::PercentageSpacing, 122);
    return font;
}

} // namespace

LedgerMetrics::LedgerMetrics(const QFont &base, double loose, int windowWidth)
{
    const double scale = TextScale::scaled(base, 100) / 100.0;
    const auto between = [&](int together, int apart) {
        return qRound(scale * (together + loose * (apart - together)));
    };
    eyebrow = spaced(strong(TextScale::resized(base, 0.82)));
    heading = TextScale::resized(base, 1.5 + 0.28 * loose);
    headingNumber = strong(heading);
    caption = TextScale::resized(base, 0.92);
    figure = strong(TextScale::resized(base, 1.7 + 0.55 * loose));
    cardTitle = strong(base);
    body = base;
    code = QFontDatabase::systemFont(QFontDatabase::FixedFont);
    code.setPixelSize(std::max(1, QFontInfo(base).pixelSize() * 17 / 20));

    side = between(16, 24);
    top = between(12, 22);
    gap = between(8, 12);
    bottom = between(8, 5);
    mostWidth = between(1200, 1200);
    radius = between(11, 11);
    cardSide = between(18, 18);
    cardTop = between(9, 14);
    titleGap = between(4, 6);

    header = TextScale::lineHeight(eyebrow) + TextScale::lineHeight(heading) + between(0, 4);
    headerGap = between(8, 16);
    tileTop = between(8, 14);
    tile = 2 * tileTop + 2 * TextScale::lineHeight(caption) + TextScale::lineHeight(figure);
    chart = between(54, 132);
    chartGap = between(15, 15);
    typeRow = std::max(between(16, 22), TextScale::lineHeight(body) + between(1, 3));
    txRow = std::max(between(22, 28), TextScale::lineHeight(body) + 6);
    listMargin = radius / 3 + 1;
    const int room = std::min(windowWidth - 2 * side, mostWidth);
    const bool isLong = QFontMetrics(caption).horizontalAdvance(LedgerTexts::footnote()) > room;
    footnote = (isLong ? 2 : 1) * TextScale::lineHeight(caption);

    mark = between(9, 9);
    markGap = between(9, 9);
    markRadius = between(3, 3);
    nameColumn = mark + markGap
                 + QFontMetrics(body).horizontalAdvance(QStringLiteral("PaymentChannelCreate"))
                 + markGap;
    trackGap = between(3, 16);
    usualRow = between(716, 716);
    accountColumn = QFontMetrics(body).horizontalAdvance(QStringLiteral("r00000000000000"));
}

LedgerMetrics::LedgerMetrics(const QFont &base, const QSize &window)
    : LedgerMetrics(base, 1, window.width())
{
    const int apart = windowHeight(usualTransactions);
    const int spare = window.height() - apart;
    if (spare < 0) {
        const int together = leastHeight(base);
        const double loose = double(window.height() - together) / (apart - together);
        *this = LedgerMetrics(base, std::clamp(loose, 0.0, 1.0), window.width());
        return;
    }
    // The list takes the rest, as far as it has rows for it.
    const int longest = int((LedgerFeed::mostTxs - usualTransactions) * txRow);
    chart += std::max(spare / 3, spare - longest);
}

int LedgerMetrics::leastWidth(const QFont &base)
{
    const LedgerMetrics loose(base, 1, 0);
    const int tile = QFontMetrics(loose.caption).horizontalAdvance(LedgerTexts::longestTileText())
                     + 2 * loose.cardSide;
    return std::max(TextScale::scaled(base, 540), 3 * tile + 2 * (loose.side + loose.gap));
}

int LedgerMetrics::leastHeight(const QFont &base)
{
    return LedgerMetrics(base, 0, 0).windowHeight(fewTransactions);
}

int LedgerMetrics::cardHeight(int content) const
{
    return cardTop + TextScale::lineHeight(cardTitle) + titleGap + content + cardTop;
}

int LedgerMetrics::chartCard() const
{
    return cardHeight(chart) - titleGap + chartGap;
}

int LedgerMetrics::windowHeight(double transactions) const
{
    const int types = (int(LedgerTexts::mostTypes) + 1) * typeRow;
    const int list = int(std::ceil(transactions * txRow));
    return top + header + headerGap + tile + gap + chartCard() + gap + cardHeight(types) + gap
           + cardHeight(list) - cardTop + listMargin + gap + footnote + bottom;
}

} // namespace tidewick
