// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "ui/ledger/TypeColor.h"

#include <algorithm>
#include <array>

namespace tidewick {

namespace {

struct Entry
{
    QStringView type;
    std::array<float, 3> color;
};

constexpr std::array<Entry, 8> exact{{
    {u"Payment", {0.27F, 0.47F, 0.95F}},
    {u"OfferCreate", {0.16F, 0.66F, 0.62F}},
    {u"OfferCancel", {0.45F, 0.55F, 0.62F}},
    {u"Batch", {0.55F, 0.42F, 0.92F}},
    {u"TrustSet", {0.83F, 0.55F, 0.20F}},
    {u"AccountSet", {0.55F, 0.55F, 0.60F}},
    {u"SetRegularKey", {0.55F, 0.55F, 0.60F}},
    {u"SignerListSet", {0.55F, 0.55F, 0.60F}},
}};

constexpr std::array<Entry, 5> prefixes{{
    {u"NFToken", {0.88F, 0.36F, 0.62F}},
    {u"AMM", {0.36F, 0.40F, 0.86F}},
    {u"Check", {0.24F, 0.66F, 0.36F}},
    {u"Escrow", {0.70F, 0.48F, 0.30F}},
    {u"PaymentChannel", {0.70F, 0.48F, 0.30F}},
}};

constexpr std::array<float, 3> other{0.55F, 0.57F, 0.64F};

QColor made(const std::array<float, 3> &color)
{
    return QColor::fromRgbF(color[0], color[1], color[2]);
}

} // namespace

QColor colorFor(QStringView type)
{
    const auto *same = std::find_if(exact.begin(), exact.end(),
                                    [type](const Entry &entry) { return type == entry.type; });
    if (same != exact.end())
        return made(same->color);
    const auto *family = std::find_if(prefixes.begin(), prefixes.end(), [type](const Entry &entry) {
        return type.startsWith(entry.type);
    });
    return made(family != prefixes.end() ? family->color : other);
}

} // namespace tidewick
