// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "ui/ledger/LedgerMetrics.h"

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
constexpr double usualTransactions = 3.5;

QFont strong(QFont font)
{
    font.setWeight(QFont::DemiBold);
    return font;
}

QFont spaced(QFont font)
{
    font.setLetterSpacing(QFont::PercentageSpacing, 112);
    return font;
}

} // namespace

LedgerMetrics::LedgerMetrics(const QFont &base, double loose)
{
    const double scale = TextScale::scaled(base, 100) / 100.0;
    const auto between = [&](int together, int apart) {
        return qRound(scale * (together + loose * (apart - together)));
    };
    eyebrow = spaced(strong(TextScale::resized(base, 0.82)));
    heading = TextScale::resized(base, 1.5 + 0.3 * loose);
    headingNumber = strong(heading);
    caption = TextScale::resized(base, 0.92);
    figure = strong(TextScale::resized(base, 1.7 + 0.6 * loose));
    cardTitle = strong(base);
    body = base;
    code = QFontDatabase::systemFont(QFontDatabase::FixedFont);
    code.setPixelSize(std::max(1, QFontInfo(base).pixelSize() * 17 / 20));

    side = between(16, 24);
    top = between(12, 21);
    gap = between(8, 12);
    mostWidth = between(1200, 1200);
    radius = between(11, 11);
    cardSide = between(18, 18);
    cardTop = between(9, 14);
    titleGap = between(4, 6);

    header = TextScale::lineHeight(eyebrow) + TextScale::lineHeight(heading) + between(0, 4);
    headerGap = between(8, 16);
    tileTop = between(8, 16);
    tile = 2 * tileTop + 2 * TextScale::lineHeight(caption) + TextScale::lineHeight(figure)
           + between(0, 2);
    chart = between(54, 128);
    typeRow = std::max(between(16, 22), TextScale::lineHeight(body) + between(1, 3));
    txRow = std::max(between(22, 28), TextScale::lineHeight(body) + 6);
    listMargin = radius / 3 + 1;
    // In a narrow window the footnote takes two lines.
    footnote = 2 * TextScale::lineHeight(caption);

    mark = between(9, 9);
    markGap = between(9, 9);
    markRadius = between(3, 3);
    nameColumn = mark + markGap
                 + QFontMetrics(body).horizontalAdvance(QStringLiteral("PaymentChannelCreate"))
                 + between(12, 16);
    accountColumn = QFontMetrics(body).horizontalAdvance(QStringLiteral("r00000000000000"));
}

LedgerMetrics::LedgerMetrics(const QFont &base, int windowHeight)
    : LedgerMetrics(base, [&] {
          const int together = leastHeight(base);
          const int apart = LedgerMetrics(base, 1.0).windowHeight(usualTransactions);
          return std::clamp(double(windowHeight - together) / (apart - together), 0.0, 1.0);
      }())
{
}

int LedgerMetrics::leastWidth(const QFont &base)
{
    const LedgerMetrics loose(base, 1.0);
    const int tile = QFontMetrics(loose.caption).horizontalAdvance(LedgerTexts::longestTileText())
                     + 2 * loose.cardSide;
    return std::max(TextScale::scaled(base, 540), 3 * tile + 2 * (loose.side + loose.gap));
}

int LedgerMetrics::leastHeight(const QFont &base)
{
    return LedgerMetrics(base, 0.0).windowHeight(fewTransactions);
}

int LedgerMetrics::cardHeight(int content) const
{
    return cardTop + TextScale::lineHeight(cardTitle) + titleGap + content + cardTop;
}

int LedgerMetrics::windowHeight(double transactions) const
{
    const int types = (int(LedgerTexts::mostTypes) + 1) * typeRow;
    const int list = int(std::ceil(transactions * txRow));
    return top + header + headerGap + tile + gap + cardHeight(chart) + gap + cardHeight(types) + gap
           + cardHeight(list) - cardTop + listMargin + gap + footnote + gap;
}

} // namespace tidewick
