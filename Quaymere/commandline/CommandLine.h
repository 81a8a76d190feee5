// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include <span>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace tidewick {

/// What the argument list asks for. Options are whole elements at any place in the list, the
/// program's own name included; of one given twice the first counts, and what follows it directly
/// is its operand, whatever it looks like. Operands are the bytes given.
namespace Mode {

/// Render the node's configuration into a folder, "-" standing for a new temporary one.
struct RenderConfig
{
    std::string directory;
    bool operator==(const RenderConfig &) const = default;
};

/// Print the version of the node in the bundle.
struct NodeVersion
{
    bool operator==(const NodeVersion &) const = default;
};

/// Describe the storage maintenance status that this JSON text holds.
struct DescribeStorage
{
    std::string json;
    bool operator==(const DescribeStorage &) const = default;
};

/// Start the node, ask it, stop it.
struct Smoke
{
    bool operator==(const Smoke &) const = default;
};

/// Render a window to a PNG file.
struct Snapshot
{
    enum class Window { Settings, Ledger, About };
    enum class Theme { Light, Dark };

    Window window;
    std::string png;
    Theme theme;
    bool operator==(const Snapshot &) const = default;
};

/// Say how an option is used.
struct Usage
{
    std::string_view message;
    bool operator==(const Usage &) const = default;
};

/// Run the menu-bar application.
struct Application
{
    bool operator==(const Application &) const = default;
};

} // namespace Mode

using AnyMode = std::variant<Mode::RenderConfig, Mode::NodeVersion, Mode::DescribeStorage,
                             Mode::Smoke, Mode::Snapshot, Mode::Usage, Mode::Application>;

inline constexpr std::string_view describeStorageUsage =
    "usage: Quaymere --describe-storage <json>\n";

/// The mode for this argument list (element 0 is the program's name). Where several options are
/// given, a fixed order of precedence decides, not their order in the list.
AnyMode parseCommandLine(std::span<const std::string> arguments);

/// All options, in their order of precedence.
std::vector<std::string_view> optionNames();

} // namespace tidewick
