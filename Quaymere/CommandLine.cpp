// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "CommandLine.h"

#include <algorithm>
#include <array>
#include <optional>

namespace tidewick {

namespace {

constexpr std::string_view renderUsage = "usage: Quaymere --render-config <dir>\n";

struct SnapshotOption
{
    std::string_view name;
    Mode::Snapshot::Window window;
    std::string_view usage;
};

constexpr std::array<SnapshotOption, 3> snapshotOptions{{
    {"--snapshot-settings", Mode::Snapshot::Window::Settings,
     "usage: Quaymere --snapshot-settings <png> [light|dark]\n"},
    {"--snapshot-ledger", Mode::Snapshot::Window::Ledger,
     "usage: Quaymere --snapshot-ledger <png> [light|dark]\n"},
    {"--snapshot-about", Mode::Snapshot::Window::About,
     "usage: Quaymere --snapshot-about <png> [light|dark]\n"},
}};

/// The elements after the first occurrence of the option; nothing when it is not given.
std::optional<std::span<const std::string>> operandsOf(std::string_view option,
                                                       std::span<const std::string> arguments)
{
    const auto found = std::ranges::find(arguments, option);
    if (found == arguments.end())
        return std::nullopt;
    return std::span(found + 1, arguments.end());
}

AnyMode parseSnapshot(const SnapshotOption &option, std::span<const std::string> operands)
{
    if (operands.empty())
        return Mode::Usage{option.usage};
    const std::string_view theme = operands.size() > 1 ? std::string_view(operands[1]) : "light";
    if (theme == "light")
        return Mode::Snapshot{option.window, operands[0], Mode::Snapshot::Theme::Light};
    if (theme == "dark")
        return Mode::Snapshot{option.window, operands[0], Mode::Snapshot::Theme::Dark};
    return Mode::Usage{option.usage};
}

} // namespace

AnyMode parseCommandLine(std::span<const std::string> arguments)
{
    if (const auto operands = operandsOf("--render-config", arguments)) {
        if (operands->empty())
            return Mode::Usage{renderUsage};
        return Mode::RenderConfig{operands->front()};
    }
    if (operandsOf("--node-version", arguments))
        return Mode::NodeVersion{};
    if (const auto operands = operandsOf("--describe-storage", arguments)) {
        if (operands->empty())
            return Mode::Usage{describeStorageUsage};
        return Mode::DescribeStorage{operands->front()};
    }
    if (operandsOf("--smoke", arguments))
        return Mode::Smoke{};
    for (const SnapshotOption &option : snapshotOptions) {
        if (const auto operands = operandsOf(option.name, arguments))
            return parseSnapshot(option, *operands);
    }
    return Mode::Application{};
}

} // namespace tidewick
