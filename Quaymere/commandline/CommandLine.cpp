// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "commandline/CommandLine.h"

#include <algorithm>
#include <array>
#include <iterator>

namespace tidewick {

namespace {

using Operands = std::span<const std::string>;

constexpr std::string_view renderUsage = "usage: Quaymere --render-config <dir>\n";
constexpr std::string_view settingsUsage =
    "usage: Quaymere --snapshot-settings <png> [light|dark]\n";
constexpr std::string_view ledgerUsage = "usage: Quaymere --snapshot-ledger <png> [light|dark]\n";
constexpr std::string_view aboutUsage = "usage: Quaymere --snapshot-about <png> [light|dark]\n";

AnyMode parseRenderConfig(Operands operands)
{
    if (operands.empty())
        return Mode::Usage{renderUsage};
    return Mode::RenderConfig{operands.front()};
}

AnyMode parseNodeVersion(Operands)
{
    return Mode::NodeVersion{};
}

AnyMode parseDescribeStorage(Operands operands)
{
    if (operands.empty())
        return Mode::Usage{describeStorageUsage};
    return Mode::DescribeStorage{operands.front()};
}

AnyMode parseSmoke(Operands)
{
    return Mode::Smoke{};
}

AnyMode parseSnapshot(Mode::Snapshot::Window window, std::string_view usage, Operands operands)
{
    if (operands.empty())
        return Mode::Usage{usage};
    const std::string_view theme = operands.size() > 1 ? std::string_view(operands[1]) : "light";
    if (theme == "light")
        return Mode::Snapshot{window, operands[0], Mode::Snapshot::Theme::Light};
    if (theme == "dark")
        return Mode::Snapshot{window, operands[0], Mode::Snapshot::Theme::Dark};
    return Mode::Usage{usage};
}

AnyMode parseSnapshotSettings(Operands operands)
{
    return parseSnapshot(Mode::Snapshot::Window::Settings, settingsUsage, operands);
}

AnyMode parseSnapshotLedger(Operands operands)
{
    return parseSnapshot(Mode::Snapshot::Window::Ledger, ledgerUsage, operands);
}

AnyMode parseSnapshotAbout(Operands operands)
{
    return parseSnapshot(Mode::Snapshot::Window::About, aboutUsage, operands);
}

struct Option
{
    std::string_view name;
    /// Returns the mode for the elements after the option.
    AnyMode (*parse)(Operands operands);
};

/// In order of precedence.
constexpr std::array<Option, 7> options{{
    {"--render-config", parseRenderConfig},
    {"--node-version", parseNodeVersion},
    {"--describe-storage", parseDescribeStorage},
    {"--smoke", parseSmoke},
    {"--snapshot-settings", parseSnapshotSettings},
    {"--snapshot-ledger", parseSnapshotLedger},
    {"--snapshot-about", parseSnapshotAbout},
}};

} // namespace

AnyMode parseCommandLine(std::span<const std::string> arguments)
{
    for (const Option &option : options) {
        const auto found = std::ranges::find(arguments, option.name);
        if (found != arguments.end())
            return option.parse(Operands(found + 1, arguments.end()));
    }
    return Mode::Application{};
}

std::vector<std::string_view> optionNames()
{
    std::vector<std::string_view> names;
    std::ranges::transform(options, std::back_inserter(names), &Option::name);
    return names;
}

} // namespace tidewick
