// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include <span>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace tidewick {

/// The modes that the argument list can select. An option is a whole element anywhere in the list,
/// the program name included. If an option is repeated, the first occurrence counts. The elements
/// right after it are its operands, whatever they look like. Operands keep their bytes unchanged.
namespace Mode {

/// Render the node's configuration into a folder; "-" means a new temporary one.
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

/// Describe the storage maintenance status in this JSON text.
struct DescribeStorage
{
    std::string json;
    bool operator==(const DescribeStorage &) const = default;
};

/// Start the node, query it and stop it.
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

/// Print how to use an option.
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

/// Returns the mode for this argument list (element 0 is the program name). If several options are
/// given, a fixed order of precedence decides, not their order in the list.
AnyMode parseCommandLine(std::span<const std::string> arguments);

/// All options, in their order of precedence.
std::vector<std::string_view> optionNames();

} // namespace tidewick
