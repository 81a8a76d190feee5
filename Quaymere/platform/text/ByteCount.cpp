// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "platform/text/ByteCount.h"

#include <array>
#include <string>

namespace tidewick::ByteCount {

namespace {

struct Unit
{
    const char *name;
    quint64 size;
    int decimals;
    /// The rounding step: one unit of the last decimal shown.
    quint64 step;
};

constexpr std::array<Unit, 6> units{{
    {"KB", 1'000, 0, 1'000},
    {"MB", 1'000'000, 1, 100'000},
    {"GB", 1'000'000'000, 2, 10'000'000},
    {"TB", 1'000'000'000'000, 2, 10'000'000'000},
    {"PB", 1'000'000'000'000'000, 2, 10'000'000'000'000},
    {"EB", 1'000'000'000'000'000'000, 2, 10'000'000'000'000'000},
}};

/// The first unit in which the rounded figure stays below 1,000.
const Unit &unitFor(quint64 magnitude)
{
    for (const Unit &unit : units) {
        const bool last = &unit == &units.back();
        if (last || magnitude + unit.step / 2 < 1'000 * unit.size)
            return unit;
    }
    Q_UNREACHABLE();
}

std::string figure(quint64 magnitude, const Unit &unit)
{
    const quint64 steps = (magnitude + unit.step / 2) / unit.step;
    const quint64 stepsPerUnit = unit.size / unit.step;
    std::string text = std::to_string(steps / stepsPerUnit);
    if (quint64 rest = steps % stepsPerUnit; rest > 0) {
        std::string decimals = std::to_string(rest);
        decimals.insert(0, static_cast<std::size_t>(unit.decimals) - decimals.size(), '0');
        decimals.erase(decimals.find_last_not_of('0') + 1);
        text += '.' + decimals;
    }
    return text;
}

} // namespace

QString text(qint64 bytes)
{
    if (bytes == 0)
        return QStringLiteral("Zero KB");

    const quint64 magnitude =
        bytes < 0 ? quint64{0} - static_cast<quint64>(bytes) : static_cast<quint64>(bytes);
    std::string text = bytes < 0 ? "-" : "";
    if (magnitude < 1'000) {
        text += std::to_string(magnitude) + (magnitude == 1 ? " byte" : " bytes");
    } else {
        const Unit &unit = unitFor(magnitude);
        text += figure(magnitude, unit) + ' ' + unit.name;
    }
    return QString::fromLatin1(text);
}

} // namespace tidewick::ByteCount
